#include "module/store/new_database.h"

#include "module/store/database.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

std::string NewDatabasePath(const std::string& path) {
    constexpr size_t kReplacedEnding = 3;
    const size_t name = path.find_last_of("/\\") + 1;  // 0 where there is no folder
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot < name) return path + ".mdb";
    const std::string_view ending = std::string_view(path).substr(dot + 1);
    for (const char* kept : {"sqlite", "db", "gpkg"})
        if (text::equalNoCase(ending, kept)) return path;
    return ending.size() == kReplacedEnding ? path.substr(0, dot + 1) + "mdb" : "";
}

int ProbeFolderWritable(const std::string& path) {
    return files::folderIsWritable(path) ? 1 : 0;
}

bool MakeDatabase(const std::string& path, DatabaseVersion version,
                  const std::function<void(CDaoDatabase&)>& fill) {
    if (!CheckDao()) return false;
    return ShowDatabaseErrors([&] {
        CDaoDatabase database;
        database.Create(path, dbLangGeneral,
                        version == DatabaseVersion::kAccess2000 ? dbVersion40 : dbVersion30);
        fill(database);
        database.Close();
    });
}

bool CreateDatabaseFile(const std::string& path, DatabaseVersion version,
                        const std::function<void(CDaoDatabase&)>& fill) {
    if (!CheckDao()) return false;
    const std::string made = NewDatabasePath(path);
    return !made.empty() && ProbeFolderWritable(made) && MakeDatabase(made, version, fill);
}

bool CreateOutputDatabase(const std::string& path, DatabaseVersion version) {
    return CreateDatabaseFile(path, version, [](CDaoDatabase&) {});
}

}  // namespace norvane
