#include "module/store/new_database.h"

#include "module/store/database.h"
#include "platform/files/files.h"

namespace norvane {

std::string NewDatabasePath(const std::string& path) {
    size_t dot = path.find('.');
    if (dot == std::string::npos) return path + ".mdb";
    return dot + 4 == path.size() ? path.substr(0, dot + 1) + "mdb" : "";
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
