// The checker finds no fault in sound files, and each of the faults that are made here on purpose; compaction
// mends them.
#include <gtest/gtest.h>

#include "platform/dao/jet/repair.h"
#include "tests/platform/dao/jet/given_files.h"
#include "tests/platform/dao/jet/soundness.h"
#include "tests/platform/dao/scratch.h"

namespace jet {
namespace {

TEST(JetCheck, TheGivenFilesAreSound) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    for (const std::string& file : givenFiles()) EXPECT_EQ(faults(file), "") << file;
}

// A database with records, memos and indexes, into which a fault is made.
class Fault : public ::testing::Test {
  protected:
    void SetUp() override {
        Database::create(path, Version::kAccess2000);
        db = std::make_unique<Database>(path, Database::Options());
        db->begin();
        Column id, text, memo;
        id.name = "ID";
        id.type = Type::kLong;
        id.autonumber = true;
        text.name = "NAME";
        text.size = 100;
        memo.name = "NOTE";
        memo.type = Type::kMemo;
        db->createTable("T", {id, text, memo});
        db->createIndex("T", {.name = "PK", .columns = {{"ID"}}, .primary = true});
        db->createIndex("T", {.name = "NAMES", .columns = {{"NAME"}}});
        for (int i = 0; i < 900; ++i) {
            std::vector<Value> values = {Value(), Value("Name " + std::to_string(i)),
                                         Value(std::string(i % 90 ? 10 : 5000, 'x'))};
            rows.push_back(db->records("T")->insert(values));
        }
        // One that has moved.
        std::vector<Value> longer = {Value(), Value(std::string(100, 'y')), Value()};
        db->records("T")->update(rows[3], longer, {false, true, false});
        EXPECT_EQ(faults(*db), "");
        definition = db->records("T")->definition();
    }
    // Makes a fault, and gives what the checker says of it.
    std::string after(const std::function<void(PageFile&)>& damage) {
        {
            PageFile::Change change(db->store().file);
            damage(db->store().file);
            change.done();
        }
        db->commit();
        db = std::make_unique<Database>(path, Database::Options());
        return faults(*db);
    }
    void expectFault(const std::string& part, const std::function<void(PageFile&)>& damage) {
        std::string found = after(damage);
        EXPECT_NE(found.find(part), std::string::npos) << found.substr(0, 600);
        // Compaction puts it right, and tells when a record was lost on the way.
        db = nullptr;
        CompactReport report = compactAndRepair(path, {});
        db = std::make_unique<Database>(path, Database::Options());
        EXPECT_EQ(faults(*db), "");
        bool whole = db->hasTable("T") && db->records("T")->definition().rows == rows.size();
        EXPECT_TRUE(whole || !report.losses.empty());
    }
    const Format& format() { return db->store().format; }

    ScratchFolder folder;
    std::string path = folder("t.mdb");
    std::unique_ptr<Database> db;
    std::vector<RowId> rows;
    TableDefinition definition;
};

TEST_F(Fault, RowCount) {
    expectFault("T: it has 900 rows and tells 901",
                [&](PageFile& f) { f.writable(definition.page).setU32(format().definitionRowsAt, 901); });
}
TEST_F(Fault, Counter) {
    expectFault("counter is behind",
                [&](PageFile& f) { f.writable(definition.page).setU32(format().definitionCounterAt, 5); });
}
TEST_F(Fault, LostPage) {
    expectFault("is lost", [&](PageFile&) { db->store().allocator.take(); });
}
TEST_F(Fault, PageInUseThatIsFree) {
    expectFault("is free, though it belongs to T", [&](PageFile& f) {
        UsageMap(f, {kGlobalMapPage, 0}).set(rows[0].page, true, {});
    });
}
TEST_F(Fault, PageOfTwoOwners) {
    expectFault("belongs to", [&](PageFile& f) {
        UsageMap(f, definition.owned).set(definition.indexes[0].root, true, {});
    });
}
TEST_F(Fault, RoomElsewhere) {
    expectFault("has room on page", [&](PageFile& f) { UsageMap(f, definition.room).set(0, true, {}); });
}
TEST_F(Fault, FreeBytes) {
    expectFault("wrong number of free bytes", [&](PageFile& f) { f.writable(rows[0].page).setU16(2, 1234); });
}
TEST_F(Fault, RowWithoutIndexEntry) {
    expectFault("has no entry for row 7", [&](PageFile&) {
        std::shared_ptr<Records> records = db->records("T");
        records->tree(1).erase(records->keys(1).key({records->read(rows[7])[1]})->bytes, rows[7]);
    });
}
TEST_F(Fault, IndexEntryWithoutRow) {
    expectFault("which does not exist", [&](PageFile&) {
        std::shared_ptr<Records> records = db->records("T");
        records->tree(1).insert(records->keys(1).key({Value("nobody")})->bytes, {rows[0].page, 250});
    });
}
TEST_F(Fault, WrongKey) {
    expectFault("has a wrong key for row 9", [&](PageFile&) {
        std::shared_ptr<Records> records = db->records("T");
        records->tree(1).erase(records->keys(1).key({records->read(rows[9])[1]})->bytes, rows[9]);
        records->tree(1).insert(records->keys(1).key({Value("other")})->bytes, rows[9]);
    });
}
TEST_F(Fault, EntriesOutOfOrder) {
    expectFault("not in order", [&](PageFile& f) {
        uint32_t leaf = IndexPage::read(f, definition.indexes[0].root).child(0);
        IndexPage page = IndexPage::read(f, leaf), turned;
        turned.next = page.next;
        turned.append(page.entry(1));
        turned.append(page.entry(0));
        for (size_t i = 2; i < page.size(); ++i) turned.append(page.entry(i));
        turned.write(f, definition.page, leaf);
    });
}
TEST_F(Fault, LeavesApart) {
    expectFault("does not stand between its neighbours", [&](PageFile& f) {
        uint32_t leaf = IndexPage::read(f, definition.indexes[0].root).child(0);
        IndexPage page = IndexPage::read(f, leaf);
        page.next = 0;
        page.write(f, definition.page, leaf);
    });
}
TEST_F(Fault, NodeWithAWrongBound) {
    expectFault("does not repeat the last entry", [&](PageFile& f) {
        IndexPage root = IndexPage::read(f, definition.indexes[0].root);
        Bytes bound = root.entry(0).copy();
        bound.back() ^= 1;
        root.replace(0, bound);
        root.write(f, definition.page, definition.indexes[0].root);
    });
}
TEST_F(Fault, MovedRowWithoutPointer) {
    expectFault("is reached by no pointer", [&](PageFile& f) {
        ByteSpan page = f.writable(rows[3].page);
        ASSERT_EQ(DataPage(format(), page).slot(rows[3].slot).kind, SlotKind::kPointer);
        deleteRow(format(), page, rows[3].slot);
    });
}
TEST_F(Fault, PieceOfALongValueThatNobodyUses) {
    expectFault("is used by no record", [&](PageFile& f) {
        ByteView orphan(std::string_view("orphan"));
        for (uint32_t page : UsageMap(f, definition.longValues[0].owned).pages())
            if (DataPage(format(), f.page(page)->view()).takes(orphan.size())) {
                addRow(format(), f.writable(page), orphan);
                return;
            }
        FAIL() << "no page has room";
    });
}
TEST_F(Fault, ChainThatRunsInACircle) {
    expectFault("T: The database is damaged", [&](PageFile& f) {
        Records::Place place;
        ASSERT_TRUE(db->records("T")->find(rows[90], place));
        RowView view = db->records("T")->view(place);
        RowId piece = LongValues::pieces(db->store(), view.bytes(definition.columns[2]))[0];
        ByteWriter pointer;
        writePointer(pointer, piece);
        ByteSpan page = f.writable(piece.page);
        page.set(DataPage(format(), page).slot(piece.slot).start, pointer.bytes);
    });
}
TEST_F(Fault, DefinitionOfNoise) {
    expectFault("T: The database is damaged",
                [&](PageFile& f) { f.writable(definition.page).setU32(8, 0xFFFFFFF0); });
}

}  // namespace
}  // namespace jet
