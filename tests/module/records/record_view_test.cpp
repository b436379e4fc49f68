// The rows of a view are those of a plain evaluation, on every engine.
#include <random>

#include "module/conditions/condition.h"
#include "module/records/key_index.h"
#include "module/store/matching_records.h"
#include "tests/module/records/trees.h"
#ifdef NORVANE_ON_SERVER
#include "tests/platform/dao/odbc/postgres_server.h"
#endif

using norvane::RecordFilter;
using norvane::RecordOrder;
using norvane::RecordView;

namespace {

class RecordViewTest : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
#ifdef NORVANE_ON_SERVER
        PostgresServer& server = PostgresServer::instance();
        if (!server.missing().empty()) GTEST_SKIP() << server.missing();
        if (!server.runs()) server.start();
        ASSERT_EQ(server.answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE"),
                  "");
        database_.Open("", false, false, dao::ConnectString(server.connect()));
#else
        database_.Create(folder_("trees." + GetParam()));
#endif
        makeTreeTable(database_);
        table_ = norvane::FindUserTable(database_, "TREES");
        trees_ = someTrees(kTrees);
        addTrees(database_, table_, trees_);
    }

    static constexpr int kTrees = 1500;

    // What jet says of an Access file: nothing, when it is in order.
    std::string faultsInFile() {
        database_.Close();
        if (!GetParam().ends_with("mdb")) return "";
        return outputOf("'" NORVANE_BIN_DIR "/jet' check '" + folder_("trees." + GetParam()) + "'");
    }

    void changeKey(const std::string& key, const std::string& other) {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT * FROM " + table_ + " WHERE PT_ID = '" + key + "'");
        records.Edit();
        records.SetFieldValue(kId, other);
        records.Update();
    }

    ScratchFolder folder_;
    CDaoDatabase database_;
    std::string table_;
    std::vector<Tree> trees_;
};

TEST_P(RecordViewTest, AllRecordsHaveTheirRowsAndTexts) {
    RecordView view(database_, table_, "pt_id");
    workAll(view);
    ASSERT_EQ(view.shown(), kTrees);
    EXPECT_EQ(view.total(), kTrees);
    EXPECT_EQ(view.keyField(), kId);
    EXPECT_EQ(keysOf(view), keysOf(trees_));
    const Tree& tree = trees_[700];
    EXPECT_EQ(view.text(700, kId), tree.id);
    EXPECT_EQ(view.text(700, kSpecies), tree.species.value_or(""));
    EXPECT_EQ(view.text(700, kNumber), std::to_string(tree.number));
    EXPECT_EQ(view.text(700, kPhoto), "") << "binary data has no text";
    EXPECT_EQ(view.text(static_cast<long>(std::find_if(trees_.begin(), trees_.end(),
                                                       [](const Tree& t) { return t.number == 1; }) -
                                          trees_.begin()),
                        kSeen),
              "06/01/2004");
    const norvane::RecordValues values = view.values(700);
    ASSERT_EQ(values.size(), view.fields().size());
    EXPECT_EQ(values[kNumber], dao::Variant(static_cast<int32_t>(tree.number)));
    EXPECT_EQ(values[kPhoto], dao::Variant(dao::Binary(100, static_cast<unsigned char>(tree.number))));
}

TEST_P(RecordViewTest, EveryFieldSortsTheRowsWithAndWithoutAnIndex) {
    RecordView view(database_, table_, "PT_ID");
    workAll(view);
    for (const bool hasIndex : {false, true}) {
        for (TreeField field : {kId, kSpecies, kHeight, kNumber}) {
            if (hasIndex) {
                database_.CreateIndex(table_, {view.fields()[field].name});
                EXPECT_FALSE(norvane::MakeIndex(database_, table_, view.fields()[field].name))
                    << "there is one";
            }
            for (bool descending : {true, false}) {
                view.sortBy({field, descending});
                EXPECT_EQ(view.shown(), hasIndex ? view.shown() : kTrees)
                    << "rows stay until the order is ready";
                workAll(view);
                EXPECT_EQ(keysOf(view), keysOf(sorted(trees_, field, descending)))
                    << "field " << field << (descending ? " down" : " up") << (hasIndex ? ", index" : "");
            }
        }
    }
    view.sortBy({});
    workAll(view);
    EXPECT_EQ(keysOf(view), keysOf(trees_));
    EXPECT_EQ(faultsInFile(), "");
}

TEST_P(RecordViewTest, WordsAndKeysLetThroughWhatTheySay) {
    RecordView view(database_, table_, "PT_ID");
    const auto expect = [&](const RecordFilter& filter, const auto& lets, const char* what) {
        view.setFilter(filter);
        workAll(view);
        std::vector<Tree> wanted;
        std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(wanted), lets);
        EXPECT_EQ(keysOf(view), keysOf(wanted)) << what;
        EXPECT_FALSE(wanted.empty() || wanted.size() == trees_.size()) << what << ": tells nothing";
        EXPECT_EQ(view.total(), kTrees) << what;
    };
    RecordFilter filter;
    filter.words = " OAK  road ";
    expect(
        filter,
        [](const Tree& t) {
            return t.species && inCapitals(*t.species).starts_with("OAK") && !t.note.empty();
        },
        "words in two fields");
    filter.words = "06/01/2004";
    expect(
        filter, [](const Tree& t) { return t.number == 1; }, "a date as it is shown");
    filter.words = "T12";
    auto keys = std::make_shared<norvane::RecordKeys>();
    for (int i = 0; i < 500; ++i) keys->insert("T" + std::to_string(i));
    filter.keys = keys;
    const auto has12 = [](const Tree& t) { return t.id.starts_with("T12"); };
    expect(
        filter, [&](const Tree& t) { return t.number < 500 && has12(t); }, "words and keys");
    filter.withoutKeys = true;
    expect(
        filter, [&](const Tree& t) { return t.number >= 500 && has12(t); }, "words without keys");
    filter.withoutKeys = false;
    filter.words.clear();
    const auto isOne = [](const Tree& t) { return t.number < 500; };
    expect(filter, isOne, "keys by a pass");
    norvane::MakeIndex(database_, table_, "PT_ID");
    expect(filter, isOne, "keys by an index");
    view.sortBy({kSpecies, true});
    workAll(view);
    std::vector<Tree> both;
    std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(both), isOne);
    EXPECT_EQ(keysOf(view), keysOf(sorted(both, kSpecies, true)));
    filter.withoutKeys = true;
    view.setFilter(filter);
    // Rows are looked at while they are found.
    for (; view.isWorking(); view.work(std::chrono::milliseconds(0)))
        for (long row : {0L, view.shown() - 1}) EXPECT_NE(view.key(row), "") << row;
    both.clear();
    std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(both),
                 [&](const Tree& t) { return !isOne(t); });
    EXPECT_EQ(keysOf(view), keysOf(sorted(both, kSpecies, true)));
}

TEST_P(RecordViewTest, ConditionsLetThroughWhatTheySay) {
    RecordView view(database_, table_, "PT_ID");
    norvane::ConditionFault fault;
    const std::optional<norvane::Condition> condition = norvane::Condition::read(
        "height > 2 AND species LIKE 'oak*' OR number_of IN (3, 5)", view.fields(), fault);
    ASSERT_TRUE(condition) << fault.sentence;
    const auto holds = [](const Tree& t) {
        const bool isOak = t.species && inCapitals(*t.species).starts_with("OAK");
        return (t.height && *t.height > 2 && isOak) || t.number == 3 || t.number == 5;
    };
    std::vector<Tree> wanted;
    std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(wanted), holds);
    RecordFilter filter;
    filter.condition = std::make_shared<const norvane::Condition>(*condition);
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(keysOf(view), keysOf(wanted));
    view.sortBy({kSpecies, false});
    workAll(view);
    EXPECT_EQ(keysOf(view), keysOf(sorted(wanted, kSpecies, false)));
    filter.words = "road";
    filter.keys = std::make_shared<const norvane::RecordKeys>(norvane::RecordKeys{"T3", "T24"});
    filter.withoutKeys = true;
    view.setFilter(filter);
    view.sortBy({});
    workAll(view);
    std::erase_if(wanted, [](const Tree& t) { return t.note.empty() || t.number == 3 || t.number == 24; });
    EXPECT_EQ(keysOf(view), keysOf(wanted)) << "with words and without some keys";

    std::vector<std::string> keys;
    const auto add = [&](std::span<const dao::Variant> values) {
        keys.push_back(values[0].get<std::string>());
        EXPECT_EQ("T" + dao::toText(values[1]), keys.back());
    };
    EXPECT_TRUE(norvane::ForEachMatching(database_, table_, &*condition, {"pt_id", "number_of"}, add));
    std::vector<Tree> all;
    std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(all), holds);
    EXPECT_EQ(keys, keysOf(all));
    keys.clear();
    EXPECT_TRUE(norvane::ForEachMatching(database_, table_, nullptr, {"PT_ID", "NUMBER_OF"}, add));
    EXPECT_EQ(keys.size(), trees_.size());
    EXPECT_ANY_THROW(norvane::ForEachMatching(database_, table_, nullptr, {"NO_FIELD"}, add));
}

TEST_P(RecordViewTest, ANewFilterTakesThePlaceOfOneAtWork) {
    RecordView view(database_, table_, "PT_ID");
    workAll(view);
    RecordFilter filter;
    filter.words = "oak";
    view.setFilter(filter);
    EXPECT_TRUE(view.isWorking()) << "one look takes a part of the table";
    EXPECT_LT(view.lookedAt(), kTrees);
    const long some = view.shown();
    EXPECT_GT(some, 0);
    filter.words = "elm";
    view.setFilter(filter);
    workAll(view);
    for (long row = 0; row < view.shown(); ++row)
        EXPECT_EQ(inCapitals(view.text(row, kSpecies)), "ELM") << row;
    filter.words = "oak";
    view.setFilter(filter);
    view.stop();
    EXPECT_FALSE(view.isWorking());
    EXPECT_EQ(view.shown(), some) << "what was found stays";
    view.setFilter({});
    EXPECT_EQ(view.shown(), kTrees);
}

TEST_P(RecordViewTest, RecordsAreFoundByTheirKeys) {
    RecordView view(database_, table_, "PT_ID");
    workAll(view);
    for (const bool hasIndex : {false, true}) {
        if (hasIndex) norvane::MakeIndex(database_, table_, "PT_ID");
        for (size_t i : {size_t{0}, size_t{63}, size_t{64}, size_t{1499}}) {
            const std::optional<long> row = view.rowOf(trees_[i].id);
            EXPECT_EQ(row, static_cast<long>(i)) << trees_[i].id << hasIndex;
            EXPECT_EQ(view.rowOf(view.id(static_cast<long>(i))), row);
        }
        EXPECT_EQ(view.rowOf(std::string("T9999")), std::nullopt);
#ifndef NORVANE_ON_SERVER
        // A record that has got another key is found by that, and not by the old one.
        const long third = *view.rowOf(std::string("T3"));
        changeKey("T3", "anew");
        view.noteChanged(view.id(third));
        EXPECT_EQ(view.key(third), "ANEW");
        EXPECT_EQ(view.rowOf(std::string("T3")), std::nullopt);
        EXPECT_EQ(view.rowOf(std::string("ANEW")), third);
        changeKey("anew", "T3");
        view.noteChanged(view.id(third));
#endif
    }
    view.sortBy({kNumber, true});
    workAll(view);
    EXPECT_EQ(view.rowOf(std::string("T3")), kTrees - 4);
    RecordFilter filter;
    filter.words = "T30";
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(view.rowOf(std::string("T3")), std::nullopt) << "it is not shown";
    std::vector<std::string> keys;
    view.forEachKey([&](const std::string& key) {
        keys.push_back(key);
        return true;
    });
    EXPECT_EQ(keys, keysOf(view));
    int seen = 0;
    view.forEachKey([&](const std::string&) { return ++seen < 3; });
    EXPECT_EQ(seen, 3);
}

// Records come, go and change, and whatever is asked of the view, its rows are those of the model.
TEST_P(RecordViewTest, WhateverHappensRowsAreThoseOfTheTable) {
    RecordView view(database_, table_, "PT_ID");
    std::mt19937 random(20041);
    const auto below = [&](size_t most) {
        return std::uniform_int_distribution<size_t>(0, most - 1)(random);
    };
    int added = kTrees;
    RecordFilter filter;
    RecordOrder order = {kNumber, true};
    view.sortBy(order);
    for (int round = 0; round < 25; ++round) {
        const Tree gone = trees_[below(trees_.size())];
        trees_.erase(std::find(trees_.begin(), trees_.end(), gone));
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT * FROM " + table_ + " WHERE PT_ID = '" + gone.id + "'");
        records.Delete();
        records.Close();
        const size_t changed = below(trees_.size());
        records.Open(dbOpenDynaset,
                     "SELECT * FROM " + table_ + " WHERE PT_ID = '" + trees_[changed].id + "'");
        records.Edit();
        trees_[changed].height = round + 100.5;
        records.SetFieldValue(kHeight, *trees_[changed].height);
        records.Update();
        records.Close();
        Tree made;
        made.number = added++;
        made.id = "T" + std::to_string(made.number);
        made.species = round % 2 ? "Yew" : "oak";
        addTrees(database_, table_, {made});
        trees_.push_back(made);
        if (round == 12) database_.CreateIndex(table_, {"HEIGHT"});

        view.refresh();
        workAll(view);
        // Every other time, what was asked before still holds.
        if (round % 2) {
            filter.words = below(2) ? "oak" : "";
            order = {below(2) ? kHeight : kNumber, below(2) != 0};
            view.setFilter(filter);
            view.sortBy(order);
            workAll(view);
        }
        std::vector<Tree> wanted;
        std::copy_if(trees_.begin(), trees_.end(), std::back_inserter(wanted), [&](const Tree& t) {
            return filter.words.empty() || (t.species && inCapitals(*t.species).starts_with("OAK"));
        });
        // Where records that compare as equal stand in the table is the engine's affair.
        std::vector<std::string> keys = keysOf(view), expected = keysOf(wanted);
        std::vector<std::string> values, expectedValues;
        for (long row = 0; row < view.shown(); ++row) values.push_back(view.text(row, order.field));
        std::sort(keys.begin(), keys.end());
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(keys, expected) << "round " << round;
        for (size_t i = 1; i < values.size(); ++i) {
            const double before = values[i - 1].empty() ? -1e9 : std::stod(values[i - 1]);
            const double here = values[i].empty() ? -1e9 : std::stod(values[i]);
            ASSERT_TRUE(order.descending ? before >= here : before <= here) << "round " << round;
        }
    }
    EXPECT_EQ(faultsInFile(), "");
}

TEST_P(RecordViewTest, ADeletedRecordIsNotedAndGoesWithARefresh) {
    RecordView view(database_, table_, "PT_ID");
    workAll(view);
    const std::string key = view.key(2);
    database_.Execute("DELETE FROM " + table_ + " WHERE PT_ID = '" + key + "'");
    EXPECT_TRUE(view.isThere(2)) << "as it was read";
    EXPECT_FALSE(view.isOutdated());
    view.noteChanged(view.id(2));
    EXPECT_EQ(view.text(2, kSpecies), "#Deleted");
    EXPECT_FALSE(view.isThere(2));
    EXPECT_EQ(view.key(2), "");
    EXPECT_TRUE(view.values(2).empty());
    EXPECT_TRUE(view.isThere(1) && view.isThere(3));
    EXPECT_TRUE(view.isOutdated());
    database_.Execute("UPDATE " + table_ + " SET SPECIES = 'yew' WHERE PT_ID = '" + trees_[5].id + "'");
    EXPECT_EQ(view.text(5, kSpecies), trees_[5].species.value_or("")) << "as it was read";
    view.refresh();
    EXPECT_EQ(view.text(5, kSpecies), "yew");
    EXPECT_EQ(view.shown(), kTrees) << "rows stay until all are found anew";
    workAll(view);
    EXPECT_EQ(view.shown(), kTrees - 1);
    EXPECT_EQ(view.key(2), trees_[3].id);
}

#ifdef NORVANE_ON_SERVER
INSTANTIATE_TEST_SUITE_P(Server, RecordViewTest, ::testing::Values("postgres"));
#else
INSTANTIATE_TEST_SUITE_P(Files, RecordViewTest, ::testing::Values("mdb", "sqlite", "gpkg"),
                         [](const auto& kind) { return kind.param; });
#endif

}  // namespace
