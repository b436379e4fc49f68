// A new database: the header, the maps, and the four system tables with what the engine keeps in them.
#include <fcntl.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstring>

#include "platform/dao/jet/schema.h"
#include "platform/files/descriptor.h"

namespace jet {
namespace {

constexpr int32_t kRelationsContainer = 0x0F000003, kDatabasesContainer = 0x0F000002, kRoot = 0x0F000000,
                  kDatabaseObject = 0x10000000;
constexpr auto kSystemFlag = static_cast<int32_t>(0x80000000);

// Users are known by two bytes. In Access 2000 a word lies on them that belongs to the moment of creation;
// how it follows from it is not known, so new databases take a pair that is.
constexpr auto kCreated = std::bit_cast<double>(uint64_t{0x40E4AB3E3BD3853E});
constexpr uint16_t kUserMask = 0x8A67;
constexpr uint16_t kAdmin = 0x0103, kUsers = 0x0102, kEngine = 0x0302, kOtherEngine = 0x0402;

struct Users {
    dao::Binary admin, users, engine, otherEngine;
};

Users usersOf(const Format& format, uint16_t mask) {
    auto user = [&](uint16_t identity) {
        ByteWriter bytes;
        bytes.u16(format.unicode ? identity ^ mask : identity);
        return bytes.bytes;
    };
    return {user(kAdmin), user(kUsers), user(kEngine), user(kOtherEngine)};
}

Column column(const char* name, Type type, int size = 0) {
    Column column;
    column.name = name;
    column.type = type;
    column.size = size;
    return column;
}

// Owner and user columns carry a mark of their own.
constexpr uint8_t kUserColumn = 0x20;

struct SystemTable {
    uint32_t page;
    const char* name;
    std::vector<Column> columns;
    std::vector<Index> indexes;  // in the order of their trees
    std::vector<uint8_t> indexFlags;
};

std::vector<SystemTable> systemTables(const Format& format) {
    constexpr Type kLong = Type::kLong, kText = Type::kText, kBinary = Type::kBinary;
    SystemTable objects{
        kObjectsPage,
        "MSysObjects",
        {column("Id", kLong), column("ParentId", kLong), column("Name", kText, 255),
         column("Type", Type::kInteger), column("DateCreate", Type::kDate), column("DateUpdate", Type::kDate),
         column("Owner", kBinary, 255), column("Flags", kLong), column("Database", Type::kMemo),
         column("Connect", Type::kMemo), column("ForeignName", kText, 255),
         column("RmtInfoShort", kBinary, 255), column("RmtInfoLong", Type::kOle), column("Lv", Type::kOle),
         column("LvProp", Type::kOle), column("LvModule", Type::kOle), column("LvExtra", Type::kOle)},
        {{.name = "ParentIdName", .columns = {{"ParentId"}, {"Name"}}, .unique = true},
         {.name = "Id", .columns = {{"Id"}}, .unique = true, .primary = true}},
        {0x01, 0x01}};
    SystemTable access{kAccessPage,
                       "MSysACEs",
                       {column("ObjectId", kLong), column("SID", kBinary, 255), column("ACM", kLong),
                        column("FInheritable", Type::kBoolean)},
                       {{.name = "ObjectId", .columns = {{"ObjectId"}}}},
                       {0x08}};
    SystemTable queries{
        kQueriesPage,
        "MSysQueries",
        {column("ObjectId", kLong), column("Attribute", Type::kByte), column("Order", kBinary, 255),
         column("Name1", kText, 255), column("Name2", kText, 255), column("Expression", Type::kMemo),
         column("Flag", Type::kInteger)},
        {{.name = "ObjectIdAttribute",
          .columns = {{"ObjectId"}, {"Attribute"}, {"Order"}},
          .unique = true,
          .primary = true}},
        {0x01}};
    if (format.unicode) queries.columns.push_back(column("LvExtra", kLong));
    SystemTable relations{
        kRelationsPage,
        "MSysRelationships",
        {column("szRelationship", kText, 255), column("grbit", kLong), column("ccolumn", kLong),
         column("icolumn", kLong), column("szObject", kText, 255), column("szColumn", kText, 255),
         column("szReferencedObject", kText, 255), column("szReferencedColumn", kText, 255)},
        {{.name = "szRelationship", .columns = {{"szRelationship"}}},
         {.name = "szObject", .columns = {{"szObject"}}},
         {.name = "szReferencedObject", .columns = {{"szReferencedObject"}}}},
        {0x02, 0x02, 0x02}};
    return {objects, access, queries, relations};
}

// Pages 0 and 1, and four pages for the definitions.
Bytes firstPages(const Format& format, Bytes bytes) {
    constexpr uint32_t kFirstPages = kRelationsPage + 1;
    bytes.resize(kFirstPages * format.pageSize);
    Bytes page(format.pageSize);
    initDataPage(format, ByteSpan(page), kGlobalMapOwner);
    Bytes free = UsageMap::empty(format);
    constexpr size_t kBitmapAt = 5;
    std::fill(free.begin() + kBitmapAt, free.end(), uint8_t{0xFF});
    free[kBitmapAt] = static_cast<uint8_t>(0xFF << kFirstPages);
    addRow(format, ByteSpan(page), free);
    addRow(format, ByteSpan(page), UsageMap::empty(format));
    std::copy(page.begin(), page.end(), bytes.begin() + static_cast<long>(kGlobalMapPage * format.pageSize));
    return bytes;
}

void defineSystemTables(Store& store) {
    uint32_t mapPage = 0;
    for (const SystemTable& table : systemTables(store.format)) {
        TableDefinition definition = newDefinition(store, table.page, table.columns, true, mapPage);
        mapPage = definition.owned.page;
        for (const Index& index : table.indexes) addIndexTo(store, definition, index);
        for (size_t i = 0; i < table.indexFlags.size(); ++i) {
            constexpr uint8_t kProperties = 0x0F;
            uint8_t& flags = definition.indexes[i].flags;
            flags = static_cast<uint8_t>((flags & ~kProperties) | table.indexFlags[i]);
        }
        for (ColumnDefinition& column : definition.columns) {
            column.ordinal = 0;
            if (column.name == "Owner" || column.name == "SID") column.flags |= kUserColumn;
        }
        writeDefinition(store, definition);
    }
}

void addObjects(Store& store, const Users& users) {
    Records objects(store, std::make_shared<TableDefinition>(readDefinition(store, kObjectsPage)));
    dao::Date created = now();
    auto add = [&](int32_t id, const char* name, int32_t parent, ObjectType type, const dao::Binary& owner) {
        std::vector<Value> values(objects.definition().columns.size());
        auto set = [&](const char* column, Value value) {
            values[static_cast<size_t>(objects.definition().columnNamed(column))] = std::move(value);
        };
        set("Id", Value(id));
        set("ParentId", Value(parent));
        set("Name", Value(name));
        set("Type", Value(static_cast<int16_t>(type)));
        set("DateCreate", Value(created));
        set("DateUpdate", Value(created));
        set("Owner", Value(owner));
        set("Flags", Value(kSystemFlag));
        objects.insert(values);
    };
    add(kTablesContainer, "Tables", kRoot, ObjectType::kContainer, users.engine);
    add(kDatabasesContainer, "Databases", kRoot, ObjectType::kContainer, users.engine);
    add(kRelationsContainer, "Relationships", kRoot, ObjectType::kContainer, users.engine);
    add(kDatabaseObject, "MSysDb", kDatabasesContainer, ObjectType::kDatabase, users.admin);
    for (const SystemTable& table : systemTables(store.format))
        add(static_cast<int32_t>(table.page), table.name, kTablesContainer, ObjectType::kTable, users.engine);
}

void addAccessRights(Store& store, const Users& users) {
    Records access(store, std::make_shared<TableDefinition>(readDefinition(store, kAccessPage)));
    auto add = [&](int32_t object, const dao::Binary& user, int32_t rights, bool inheritable = false) {
        std::vector<Value> values = {Value(object), Value(user), Value(rights), Value(inheritable)};
        access.insert(values);
    };
    for (uint32_t page : {kObjectsPage, kAccessPage, kQueriesPage})
        add(static_cast<int32_t>(page), users.admin, 0x60000);
    add(kRelationsPage, users.admin, 0xE0000);
    add(kTablesContainer, users.otherEngine, 0xF00FE, true);
    if (store.format.unicode)
        add(kTablesContainer, users.admin, 0x60001);
    else
        add(kTablesContainer, users.admin, 0xFFEFF, true);
    add(kRelationsContainer, users.otherEngine, 0xF00FE, true);
    add(kRelationsContainer, users.admin, 0x60001);
    add(kDatabasesContainer, users.admin, 0x60000);
    add(kDatabaseObject, users.admin, 0x6000E);
    add(kDatabaseObject, users.users, 0x0E);
    for (uint32_t page : {kQueriesPage, kRelationsPage, kObjectsPage})
        add(static_cast<int32_t>(page), users.users, 0x14);
    add(kTablesContainer, users.users, 0xFFEFF, true);
    add(kRelationsContainer, users.users, 0xFFFFF, true);
}

void writeNewFile(const std::string& path, const Bytes& bytes) {
    files::Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file)
        throw Error("Cannot make the database \"" + path +
                    "\": " + (errno == EEXIST ? "it exists already" : std::strerror(errno)) + ".");
    try {
        writeAt(file.get(), bytes.data(), bytes.size(), 0);
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
}

}  // namespace

Bytes newDatabaseHeader(const Format& format) {
    Header header;
    header.created = kCreated;
    return makeHeader(format, header);
}

void makeEmptyFile(const std::string& path, Version version, const Bytes& header) {
    const Format& format = version == Version::kAccess97 ? kJet3 : kJet4;
    writeNewFile(path, firstPages(format, header.empty() ? newDatabaseHeader(format) : header));
}

bool userMaskOf(const Value& owner, uint16_t& mask) {
    if (!owner.is<dao::Binary>() || owner.get<dao::Binary>().size() != 2) return false;
    mask = ByteView(owner.get<dao::Binary>()).u16(0) ^ kAdmin;
    return true;
}

void createDatabase(const std::string& path, Version version, const Heritage* heritage, bool scratch) {
    makeEmptyFile(path, version, heritage ? heritage->header : Bytes());
    try {
        Store store(path, {.scratch = scratch});
        store.file.beginWrite();
        {
            PageFile::Change change(store.file);
            Users users = usersOf(store.format, heritage ? heritage->userMask : kUserMask);
            defineSystemTables(store);
            addObjects(store, users);
            addAccessRights(store, users);
            change.done();
        }
        store.file.commit();
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
}

void Database::create(const std::string& path, Version version) {
    createDatabase(path, version, nullptr);
}

}  // namespace jet
