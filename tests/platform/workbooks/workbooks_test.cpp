// Workbooks of every kind, good ones and such that nobody should have to read.
#include <gtest/gtest.h>
#include <unistd.h>

#include <signal.h>

#include <algorithm>
#include <cstring>

#include "platform/text/text.h"
#include "platform/workbooks/kinds.h"
#include "platform/workbooks/reading_process.h"
#include "platform/workbooks/workbook.h"
#include "tests/platform/dao/scratch.h"

namespace {

class Workbooks : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_(name); }

    // The rows of a sheet: "a,b;c,d".
    std::string rows(const std::string& name, size_t sheet = 0) const {
        std::vector<std::string> all;
        workbooks::open(path(name))->read(sheet, [&](const std::vector<std::string>& row) {
            all.push_back(text::join(row, ","));
            return true;
        });
        return text::join(all, ";");
    }
    // Why a file is refused; "" when it is not.
    std::string refusal(const std::string& name) const {
        try {
            workbooks::open(path(name));
            return "";
        } catch (const workbooks::Error& error) {
            return text::replaceAll(error.what(), folder_.path() + "/", "");
        }
    }

    // A record of the older format of sheets, and what goes into one.
    static std::string record(uint16_t kind, const std::string& body) {
        return number(kind) + number(static_cast<uint16_t>(body.size())) + body;
    }
    static std::string number(uint16_t value) {
        return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
    }
    static std::string label(uint16_t row, uint16_t column, const std::string& text) {
        return record(0x0204, number(row) + number(column) + number(0) +
                                  number(static_cast<uint16_t>(text.size())) + text);
    }
    static std::string real(uint16_t row, uint16_t column, double value) {
        std::string bytes(sizeof value, '\0');
        std::memcpy(bytes.data(), &value, sizeof value);
        return record(0x0203, number(row) + number(column) + number(0) + bytes);
    }
    // A sheet of that format in a code page.
    static std::string sheet(uint16_t page, const std::string& cells) {
        return record(0x0409, number(0) + number(0x10) + number(0)) + record(0x42, number(page)) + cells +
               record(0x0A, "");
    }

    ScratchFolder folder_;
};

constexpr const char* kDamaged = "is damaged, or no workbook that can be read.";

}  // namespace

TEST_F(Workbooks, SheetsOfTheOlderFormatHaveTheirCodePage) {
    writeFile(path("a.xls"),
              sheet(1251, label(0, 0, "Id") + label(0, 1, "\xD4") + real(1, 0, 1042) + real(1, 1, 121.726) +
                              real(2, 0, -0.5) +
                              record(0x0205, number(2) + number(1) + number(0) + std::string("\1\0", 2))));
    EXPECT_EQ(rows("a.xls"), "Id,\u0424;1042,121.726;-0.5,1");
    EXPECT_EQ(workbooks::open(path("a.xls"))->sheets().size(), 1u);
}

TEST_F(Workbooks, WhatIsNoneIsRefused) {
    writeFile(path("empty.xls"), "");
    writeFile(path("text.xls"), "this is no workbook");
    writeFile(path("text.xlsx"), "this is no workbook");
    writeFile(path("text.ods"), "PK\3\4 and no archive");
    writeFile(path("secret.xlsx"), "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and so on");
    writeFile(path("a.txt"), "text");
    for (const char* name : {"empty.xls", "text.xls", "text.xlsx", "text.ods"})
        EXPECT_EQ(refusal(name), std::string("The workbook \"") + name + "\" " + kDamaged);
    EXPECT_EQ(refusal("none.xls"), "The workbook \"none.xls\" cannot be opened.");
    EXPECT_EQ(refusal("none.ods"), "The workbook \"none.ods\" cannot be opened.");
    EXPECT_EQ(refusal("secret.xlsx"), "The workbook \"secret.xlsx\" is protected by a password.");
    EXPECT_EQ(refusal("a.txt"), "The file \"a.txt\" is no workbook of a kind that can be read.");
}

TEST_F(Workbooks, ZippedWorkbooksAreRead) {
    ASSERT_EQ(
        outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/platform/workbooks/make_workbooks.py' '" +
                 folder_.path() + "'"),
        "");
    EXPECT_EQ(rows("book.xlsx"),
              "Id,Day,Flag,Size,Sum;1042,2004-05-31,1,121.726,2084;,,,,;"
              "M\u00FCller & S\u00F6hne,2004-05-31 12:00:00,0,,text;12:00:00,7,2004-05-31,,");
    EXPECT_EQ(workbooks::open(path("book.xlsx"))->sheets(), (std::vector<std::string>{"Jobs", "B\u00FCro$"}));
    EXPECT_EQ(rows("book.xlsx", 1), "");
    EXPECT_NE(rows("old.xlsx").find("1042,2008-06-01,"), std::string::npos) << rows("old.xlsx");
    EXPECT_EQ(rows("book.ods"), "Id,Day,Size;1042,2004-05-31,121.726;7,x,x");
}

// A reader that fails takes its own process down and no other.
TEST_F(Workbooks, AReaderThatFailsIsTold) {
    using workbooks::Workbook;
    auto told = [&](const std::function<std::unique_ptr<Workbook>()>& open) -> std::string {
        try {
            workbooks::readInProcess("x.xls", open);
            return "";
        } catch (const workbooks::Error& error) {
            return error.what();
        }
    };
    const char* kFailed = "The workbook \"x.xls\" is damaged: it cannot be read to its end.";
    EXPECT_EQ(told([]() -> std::unique_ptr<Workbook> {
                  ::raise(SIGSEGV);
                  return nullptr;
              }),
              kFailed);
    EXPECT_EQ(told([]() -> std::unique_ptr<Workbook> { ::_exit(0); }), kFailed);
    EXPECT_EQ(told([]() -> std::unique_ptr<Workbook> { throw std::bad_alloc(); }), kFailed);
    EXPECT_EQ(told([]() -> std::unique_ptr<Workbook> { throw workbooks::Error("why"); }), "why");
    // One that fails in the middle of a sheet.
    class Half : public Workbook {
      public:
        const std::vector<std::string>& sheets() const override { return names_; }
        void read(size_t, const workbooks::TakeRow& take) const override {
            for (int i = 0; i < 100000; ++i) take({"a", "b"});
            ::raise(SIGKILL);
        }

      private:
        std::vector<std::string> names_ = {"One"};
    };
    EXPECT_EQ(told([] { return std::make_unique<Half>(); }), kFailed);
}

TEST_F(Workbooks, ACutWorkbookIsReadOrRefused) {
    const std::string shared = NORVANE_SHARED_DATA "/owners.xls";
    if (!std::filesystem::exists(shared)) GTEST_SKIP() << "the shared workbook is not there";
    std::ifstream in(shared, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(in), {}};
    writeFile(path("whole.xls"), whole);
    const std::string all = rows("whole.xls");
    EXPECT_TRUE(
        all.starts_with("JOBNO,PROJECT,CLIENT,SHEET,DATE,DRAWN,CHECKED,SCALE,ACRES,SHEETS,FEE,ACTIVE;"
                        "03-0101,CEDAR CREEK SUBDIVISION,UNION COUNTY PUBLIC WORKS,1 OF 3,2003-01-01,RLM,WPB,"
                        "1\"=20',38.394,3,13721.16,0;"))
        << all.substr(0, 300);
    EXPECT_EQ(std::count(all.begin(), all.end(), ';'), 80);
    int refused = 0;
    for (size_t size = 0; size < whole.size(); size += 997) {
        writeFile(path("cut.xls"), whole.substr(0, size));
        refused += !refusal("cut.xls").empty();
    }
    EXPECT_GT(refused, 10);
}
