#include "module/store/database.h"

#include "module/store/server_sign_in.h"
#include "platform/ads/editor.h"
#include "platform/registry/registry.h"
#include "platform/ui/backend.h"

namespace norvane {

int IsDaoAvailable(const std::string& version) {
    std::string program = version == "3.6" ? "DAO.DBEngine.36" : "DAO.DBEngine";
    // A registered class is enough. Whether the file of its server is there would not change the answer.
    return registry::readString(registry::kClassesRoot, program + "\\CLSID") ? 1 : 0;
}

bool CheckDao() {
    if (IsDaoAvailable("3.6")) return true;
    acutPrintf("\nPlease install DAO 3.6...");
    return false;
}

bool ShowDatabaseErrors(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const CDaoException& error) {
        ui::messageBox("Error", error.description());
        return false;
    }
}

DatabaseOutcome WithDatabase(const std::string& path, const std::function<void(CDaoDatabase&)>& work) {
    if (!CheckDao()) return DatabaseOutcome::kNoDao;
    bool done = ShowDatabaseErrors([&] {
        CDaoDatabase database;
        OpenDatabase(database, path);
        work(database);
        database.Close();
    });
    return done ? DatabaseOutcome::kDone : DatabaseOutcome::kFailed;
}

bool InTransaction(CDaoDatabase& database, const std::function<bool()>& work) {
    database.BeginTrans();
    bool isKept = false;
    try {
        isKept = work();
    } catch (...) {
        database.Rollback();
        throw;
    }
    if (isKept)
        database.CommitTrans();
    else
        database.Rollback();
    return isKept;
}

void OpenDatabase(CDaoDatabase& database, const std::string& path) {
    if (!IsOdbcPath(path)) return database.Open(path);
    database.Open("", false, false, OpenConnectString(path));
    RememberConnection(database, path);
}

}  // namespace norvane
