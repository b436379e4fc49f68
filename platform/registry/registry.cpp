#include "platform/registry/registry.h"

#include <cstdlib>
#include <map>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace registry {
namespace {

// Full key names and value names in upper case.
using Values = std::map<std::string, std::string>;
using Hive = std::map<std::string, Values>;

constexpr const char* kEngineClass = "{6C1E7A52-0B7D-4D1B-9A53-8E2F4B7C1D36}";

Hive defaults() {
    std::string root = std::string(kClassesRoot) + "\\";
    return {
        {root + "DAO.DBENGINE.36", {{"", "DAO 3.6"}}},
        {root + "DAO.DBENGINE.36\\CLSID", {{"", kEngineClass}}},
        {root + "CLSID\\" + kEngineClass + "\\INPROCSERVER32", {{"", "libplatform.so"}}},
    };
}

bool isWithin(std::string_view key, std::string_view top) {
    return text::startsWith(key, top) && (key.size() == top.size() || key[top.size()] == '\\');
}

void readSection(std::string_view name, Hive& hive, Values*& section) {
    bool removes = !name.empty() && name.front() == '-';
    std::string key = text::upper(text::trim(removes ? name.substr(1) : name));
    section = removes ? nullptr : &hive[key];
    if (removes) std::erase_if(hive, [&](const auto& entry) { return isWithin(entry.first, key); });
}

Hive load() {
    Hive hive = defaults();
    auto lines = files::readLines(hivePath());
    if (!lines) return hive;
    Values* section = nullptr;
    for (const std::string& raw : *lines) {
        std::string_view line = text::trim(raw);
        if (line.size() >= 2 && line.front() == '[' && line.back() == ']') {
            readSection(line.substr(1, line.size() - 2), hive, section);
            continue;
        }
        size_t equals = line.find('=');
        if (!section || equals == std::string_view::npos || line.front() == ';' || line.front() == '#')
            continue;
        std::string name = text::upper(text::trim(line.substr(0, equals)));
        (*section)[name == "@" ? "" : name] = text::trim(line.substr(equals + 1));
    }
    return hive;
}

std::string fullKey(std::string_view root, std::string_view key) {
    return text::upper(std::string(root) + "\\" + std::string(key));
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::optional<std::string> readString(std::string_view root, std::string_view key,
                                      std::string_view valueName) {
    Hive hive = load();
    auto found = hive.find(fullKey(root, key));
    if (found == hive.end()) return std::nullopt;
    auto value = found->second.find(text::upper(valueName));
    if (value == found->second.end()) return std::nullopt;
    return value->second;
}

bool hasKey(std::string_view root, std::string_view key) {
    std::string wanted = fullKey(root, key);
    for (const auto& [name, values] : load())
        if (isWithin(name, wanted)) return true;
    return false;
}

std::string hivePath() {
    if (std::string path = environment("NORVANE_REGISTRY"); !path.empty()) return path;
    std::string folder = environment("XDG_CONFIG_HOME");
    if (folder.empty()) folder = files::join(environment("HOME"), ".config");
    return files::join(folder, "norvane/registry.ini");
}

}  // namespace registry
