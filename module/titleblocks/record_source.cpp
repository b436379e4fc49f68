#include "module/titleblocks/record_source.h"

#include <string_view>

#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/titleblocks/database_source.h"
#include "module/titleblocks/dbf_source.h"
#include "module/titleblocks/delimited_source.h"
#include "module/titleblocks/workbook_source.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

SourceKind KindOfSource(const std::string& path) {
    if (IsOdbcPath(path)) return SourceKind::kServer;
    constexpr std::pair<std::string_view, SourceKind> kKinds[] = {
        {"MDB", SourceKind::kDatabase},      {"SQLITE", SourceKind::kDatabase},
        {"DB", SourceKind::kDatabase},       {"GPKG", SourceKind::kDatabase},
        {"DBF", SourceKind::kTable},         {"XLS", SourceKind::kWorkbook},
        {"XLSX", SourceKind::kWorkbook},     {"ODS", SourceKind::kWorkbook},
        {"CSV", SourceKind::kDelimitedText},
    };
    const std::string extension = text::upper(files::extensionOf(path));
    for (const auto& [known, kind] : kKinds)
        if (extension == known) return kind;
    return SourceKind::kNone;
}

bool IsSourceThere(const std::string& path) {
    const SourceKind kind = KindOfSource(path);
    return kind == SourceKind::kServer || (kind != SourceKind::kNone && files::exists(path));
}

std::unique_ptr<RecordSource> OpenRecordSource(const dao::DatabasePath& path) {
    switch (KindOfSource(path)) {
        case SourceKind::kDatabase:
        case SourceKind::kServer:
            return IsDaoAvailable("3.6") ? OpenDatabaseSource(path) : nullptr;
        case SourceKind::kTable:
            return OpenDbfSource(path);
        case SourceKind::kWorkbook:
            return OpenWorkbookSource(path);
        case SourceKind::kDelimitedText:
            return OpenDelimitedSource(path);
        case SourceKind::kNone:
            break;
    }
    return nullptr;
}

RecordSource* RecordSources::find(const dao::DatabasePath& path) {
    if (const auto known = sources_.find(path.text()); known != sources_.end()) return known->second.get();
    if (!IsSourceThere(path)) return nullptr;
    return sources_.emplace(path.text(), OpenRecordSource(path)).first->second.get();
}

}  // namespace norvane
