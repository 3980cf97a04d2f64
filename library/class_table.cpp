// The class table: declared order, fixed identifiers (stable across builds).
#include "library/class_table.h"

namespace kdvq {

const std::vector<UpgraderClass>& UpgraderClasses() {
    static const std::vector<UpgraderClass> classes = {
        {"KDHideVqTables", "{7C19CFA2-BCAB-59A6-A266-D1C6B49D6BFD}", &New_KDHideVqTables},
        {"KDHideSMTables", "{E8BE134B-193A-5089-9618-832632736345}", &New_KDHideSMTables},
        {"KDHideWFMTables", "{11B820CB-D5FB-5B07-8059-2DCD92D77028}", &New_KDHideWFMTables},
        {"KDVqUpgrader830", "{0D11FB58-6451-55FB-AD60-92BA2DB624CD}", &New_KDVqUpgrader830},
        {"KDUpgradeWFM830", "{2E563C58-20D0-5908-8406-E65979052059}", &New_KDUpgradeWFM830},
        {"KDVqUpgrader832", "{9BA2CA67-31C1-50A3-8172-32F2982FF450}", &New_KDVqUpgrader832},
        {"KDHideMobileTables", "{ACAF1D9F-70ED-5B4F-8AD5-8F74FC3B2C7A}", &New_KDHideMobileTables},
        {"KDUpgradeWFM832", "{ACF7C009-CA22-5534-8BD6-2D7B27FF010A}", &New_KDUpgradeWFM832},
        {"KDVqUpgrader833", "{34797278-2416-5972-829D-EC362748F29C}", &New_KDVqUpgrader833},
        {"KDUpgraderSM833", "{ACF6AB4B-B681-5F31-9E75-24393BE0ED1C}", &New_KDUpgraderSM833},
        {"KDUpgradeSM830", "{98ED984B-22F1-5F30-BBD4-91DA2A0549FA}", &New_KDUpgradeSM830},
        {"KDUpgradeMobile901", "{F90BF3C5-34F7-55C3-8E2B-3A93D7BA56B8}", &New_KDUpgradeMobile901},
        {"KDUpgradeWFM833", "{A1B260BB-9A5D-5EE7-BCF9-397C8708652A}", &New_KDUpgradeWFM833},
        {"KDUpgradeMobile832", "{8DBCD26D-4031-563B-A4BF-1CBE40D0B7FE}", &New_KDUpgradeMobile832},
        {"KDCreateTableIndices", "{BA5C4C5A-041B-54A5-82BA-2598898A17BC}", &New_KDCreateTableIndices},
        {"KDVqUpgrader902", "{781FC4F5-673D-5CB9-9864-A7D428588FE1}", &New_KDVqUpgrader902},
        {"KDUpgradeWFM902", "{2C125DBF-4489-5937-BF33-D539464DAB88}", &New_KDUpgradeWFM902},
        {"KDVqUpgrader901sp1", "{964D120A-C3B0-57FE-BF44-66783377BAF9}", &New_KDVqUpgrader901sp1},
        {"KDUpgraderSM902", "{C7383B6F-37E1-568C-B36A-7EF658A074A4}", &New_KDUpgraderSM902},
        {"KDUpgradeMobile902", "{6CD026E1-5A7E-5700-8690-1A9696F0DB74}", &New_KDUpgradeMobile902},
        {"KDUpgradeWFM901sp1", "{F1A951D9-F4F1-50D5-B9D8-B5EEB517A72E}", &New_KDUpgradeWFM901sp1},
        {"KDUpgradeMobile91SP1", "{6D8B2DD6-CD88-5A97-B938-0878754D348F}", &New_KDUpgradeMobile91SP1},
        {"KDUpgradeSM912", "{59B525BE-4E5B-5A2C-AC9B-4E2C57DE312E}", &New_KDUpgradeSM912},
        {"KDVqUpgrader912", "{BBC3BCA0-C2C7-582B-9A54-31E640AC4A98}", &New_KDVqUpgrader912},
        {"KDVqUpgrader920", "{BE47913E-EFE3-591E-A970-F4DCE3B2006B}", &New_KDVqUpgrader920},
        {"KDUpgradeSM921", "{C9FE42E7-D90C-563B-AA91-EBE877BE5BC5}", &New_KDUpgradeSM921},
        {"KDUpgradeMobile93rev2", "{77F96929-1201-555A-9766-8A9C73443295}", &New_KDUpgradeMobile93rev2},
        {"KDUpgradeSM93rev2", "{911315BC-85FF-55C2-A0DA-C6D5DC5E45D7}", &New_KDUpgradeSM93rev2},
        {"KDVqUpgrader93rev2", "{7D843E45-0A05-5463-99B4-E2B826876954}", &New_KDVqUpgrader93rev2},
        {"kdUpgradeWFM93rev2", "{A8EA9092-ED90-52A8-B582-57B191EF7AD9}", &New_kdUpgradeWFM93rev2},
        {"kdUpgradeWFM931", "{7BC01565-5345-5B80-90D6-9032B120654A}", &New_kdUpgradeWFM931},
    };
    return classes;
}

std::string ProgIdOf(const UpgraderClass& c) { return std::string("kdVqUpgraders.") + c.name; }

}  // namespace kdvq
