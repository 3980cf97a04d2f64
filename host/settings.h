#pragma once
// The host's settings: the values its registry component hands out, by key
// and value name (both compared without regard to case, as registry names
// are). They come from a settings file and from --setting options, which
// win over the file.
//
// Settings file (INI form):
//   [BulletinBoard Version]
//   VersionName=9.3.1
// A --setting option is "KEY/VALUENAME=VALUE" (split at the last '/' before
// the '='), e.g. --setting "BulletinBoard Version/VersionName=9.3.1".
#include <map>
#include <optional>
#include <string>

namespace kdhost {

class Settings {
public:
    // $KDVQ_SETTINGS, else $XDG_CONFIG_HOME/kdvq/settings.ini, else
    // ~/.config/kdvq/settings.ini.
    static std::string DefaultPath();

    // Reads a settings file; a missing file adds nothing. Raises
    // std::runtime_error naming the file and line for a malformed line.
    void LoadFile(const std::string& path);
    void LoadText(const std::string& text, const std::string& path);
    // Raises std::invalid_argument when the text is not KEY/VALUENAME=VALUE.
    void ApplyOption(const std::string& assignment);
    void Set(const std::string& key, const std::string& valueName, const std::string& value);

    std::optional<std::string> Get(const std::string& key, const std::string& valueName) const;

private:
    static std::string Fold(const std::string& name);
    std::map<std::string, std::map<std::string, std::string>> values_;
};

}  // namespace kdhost
