// A registered class whose steps do not exist yet: it never applies, so no
// upgrade run can count it as done.
#include "framework/placeholder_upgrader.h"

namespace kdvq {

namespace {

class PlaceholderUpgrader : public UpgraderBase {
public:
    explicit PlaceholderUpgrader(const std::string& className) : UpgraderBase(className, className) {}

protected:
    bool OnEnabled(IKDLogin*, int32_t&) override { return false; }
    bool OnExecute() override { return false; }
    int32_t NameId() const override { return 0; }
    int32_t DescriptionId() const override { return 0; }
    std::string OnName() override { return ClassName(); }
    std::string OnDescription() override { return ClassName(); }
};

}  // namespace

com::ComPtr<UpgraderBase> NewPlaceholderUpgrader(const std::string& className) {
    return com::ComPtr<UpgraderBase>(new PlaceholderUpgrader(className));
}

}  // namespace kdvq
