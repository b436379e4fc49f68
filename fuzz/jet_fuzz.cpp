// Access files as they come: all of a file is read, checked, changed and compacted. The first byte tells how
// far it goes; the second picks what is changed.
//
// Whatever the file holds, the answer is a value or an error; a file in which nothing was changed is the same
// afterwards.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/dao/jet/check.h"
#include "platform/dao/jet/compact.h"

namespace {

std::string scratchFile() {
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder ? folder : "/dev/shm") + "/jet-fuzz-" + std::to_string(::getpid()) + ".mdb";
}

void write(const std::string& path, const uint8_t* data, size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
}

bool holds(const std::string& path, const uint8_t* data, size_t size) {
    std::string content(size + 1, '\0');
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    content.resize(std::fread(content.data(), 1, size + 1, file));
    std::fclose(file);
    return content == std::string(reinterpret_cast<const char*>(data), size);
}

template <typename Work>
void attempt(Work work) {
    try {
        work();
    } catch (const jet::Error&) {
        // An error with a text is an answer.
    }
}

void read(jet::Database& db) {
    jet::Database::Reading reading(db);
    for (const jet::TableInfo& table : db.tables())
        attempt([&] {
            db.columns(table.name);
            db.indexes(table.name);
            std::shared_ptr<jet::Records> records = db.records(table.name);
            size_t count = 0;
            for (jet::Walk walk(records); walk.next() && count < 1000; ++count)
                for (size_t i = 0; i < records->definition().columns.size(); ++i)
                    attempt([&] { walk.value(i); });
        });
    attempt([&] { jet::check(db); });
}

void change(jet::Database& db, unsigned what) {
    for (const jet::TableInfo& table : db.tables()) {
        attempt([&] {
            std::shared_ptr<jet::Records> records = db.records(table.name);
            jet::Walk walk(records);
            for (unsigned skipped = 0; walk.next() && skipped < what % 5; ++skipped) {
            }
            std::vector<jet::Value> values = records->read(walk.row());
            std::vector<bool> touched(values.size(), what & 8);
            for (size_t i = 0; i < values.size(); ++i)
                if (values[i].is<std::string>()) values[i] = jet::Value(std::string(what, 'x'));
            if (what & 1) attempt([&] { records->insert(values); });
            if (what & 2) attempt([&] { records->update(walk.row(), values, touched); });
            if (what & 4) attempt([&] { records->erase(walk.row()); });
        });
        if (table.system) continue;
        jet::Column memo;
        memo.name = "FUZZ";
        memo.type = jet::Type::kMemo;
        if (what & 16) attempt([&] { db.addColumn(table.name, memo); });
        if (what & 32) attempt([&] { db.renameTable(table.name, "OTHER"); });
        if (what & 64) attempt([&] { db.dropTable(table.name); });
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string path = scratchFile();
    if (size < 2) return 0;
    write(path, data + 2, size - 2);
    attempt([&] {
        jet::Database db(path, {.readOnly = data[0] % 4 == 0});
        read(db);
        if (data[0] % 4 == 1 || data[0] % 4 == 2) {
            db.begin();
            attempt([&] { change(db, data[1]); });
            if (data[0] % 4 == 1) attempt([&] { db.commit(); });
            attempt([&] { read(db); });
        }
        if (data[0] % 4 == 3) attempt([&] { jet::compact(db); });
    });
    bool untouched = data[0] % 4 == 0 || data[0] % 4 == 2;
    if (untouched && !holds(path, data + 2, size - 2)) std::abort();
    ::unlink(path.c_str());
    return 0;
}
