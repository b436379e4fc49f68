// Reading and writing of drawing files, checked by a reader of their groups that is written here and by
// ezdxf.
#include "hostcad/dxf/dxf.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <charconv>
#include <sstream>

#include "hostcad/drawing/entity_builder.h"
#include "hostcad/dxf/blank_drawing.h"
#include "platform/files/files.h"
#include "tests/hostcad/independent_reader.h"

using namespace hostcad;

namespace {

const std::string kSurvey = NORVANE_SHARED_DATA "/survey.dxf";
const std::string kSurveyR12 = NORVANE_SHARED_DATA "/survey_r12.dxf";

// A text file as its pairs of lines, without comments. Numbers are spelled in one way, so that 0 and 0.0 are
// the same.
std::vector<std::string> tagsOf(const std::string& content) {
    std::vector<std::string> tags;
    std::istringstream lines(content);
    std::string code, value;
    while (std::getline(lines, code) && std::getline(lines, value)) {
        if (!value.empty() && value.back() == '\r') value.pop_back();
        int number = std::stoi(code);
        if (number == 999) continue;
        double real = 0;
        bool isReal = (number >= 10 && number < 60) || (number >= 110 && number < 150) ||
                      (number >= 210 && number < 240) || (number >= 1010 && number < 1060);
        auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), real);
        if (isReal && error == std::errc() && end == value.data() + value.size()) {
            std::ostringstream spelled;
            spelled.precision(17);
            spelled << real;
            value = spelled.str();
        }
        tags.push_back(std::to_string(number) + " " + value);
    }
    return tags;
}

std::unique_ptr<Drawing> parse(const std::string& content) {
    std::string error;
    auto drawing = parseDxf(content, error);
    EXPECT_TRUE(drawing) << error;
    return drawing;
}

std::string format(const Drawing& drawing, DxfFormat form) {
    std::string content, error;
    EXPECT_TRUE(formatDxf(drawing, form, content, error)) << error;
    return content;
}

std::string saved(const std::string& content) {
    auto drawing = parse(content);
    return drawing ? format(*drawing, drawing->format()) : "";
}

std::string errorOf(const std::string& content) {
    std::string error;
    EXPECT_EQ(parseDxf(content, error), nullptr) << content;
    return error;
}

// The first tag that differs, for a message that can be read.
void expectSameTags(const std::string& before, const std::string& after) {
    std::vector<std::string> a = tagsOf(before), b = tagsOf(after);
    ASSERT_FALSE(a.empty());
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        ASSERT_EQ(a[i], b[i]) << "tag " << i << " of " << a.size();
    EXPECT_EQ(a.size(), b.size());
}

// Sections as a file has them: groups are written "code value|code value".
std::string lines(std::string groups) {
    std::string out;
    std::istringstream items(groups);
    for (std::string item; std::getline(items, item, '|');) {
        size_t blank = item.find(' ');
        out +=
            item.substr(0, blank) + "\n" + (blank == std::string::npos ? "" : item.substr(blank + 1)) + "\n";
    }
    return out;
}

std::string entitiesFile(const std::string& header, const std::string& entities) {
    return lines("0 SECTION|2 HEADER|" + header + "|0 ENDSEC|0 SECTION|2 ENTITIES" +
                 (entities.empty() ? "" : "|" + entities) + "|0 ENDSEC|0 EOF");
}

class SurveyFiles : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        std::optional<std::string> read = files::read(GetParam());
        if (!read) GTEST_SKIP() << "no " << GetParam();
        content_ = *read;
    }
    std::string content_;
    TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Both, SurveyFiles, testing::Values(kSurvey, kSurveyR12),
                         [](const auto& file) { return file.param == kSurvey ? "R2000" : "R12"; });

}  // namespace

// --- Nothing is lost ----------------------------------------------------------------------------------

TEST_P(SurveyFiles, AreSavedWithEveryGroupInItsPlace) {
    expectSameTags(content_, saved(content_));
}

TEST_P(SurveyFiles, ComeBackFromABinaryFile) {
    auto drawing = parse(content_);
    ASSERT_TRUE(drawing);
    DxfFormat binary = drawing->format();
    binary.binary = true;
    std::string path = folder_ / "binary.dxf", error;
    ASSERT_TRUE(writeDxf(*drawing, path, binary, error)) << error;
    auto again = readDxf(path, error);
    ASSERT_TRUE(again) << error;
    EXPECT_TRUE(again->format().binary);
    EXPECT_EQ(again->path(), path);
    expectSameTags(content_, format(*again, drawing->format()));
    EXPECT_EQ(format(*again, again->format()), *files::read(path));
    EXPECT_EQ(ezdxfIsInstalled() ? auditOf(folder_, path) : "", "");
}

// Drawings of every version as an independent program writes them, as text and binary.
TEST(Versions, OfOtherProgramsAreKept) {
    if (!ezdxfIsInstalled()) GTEST_SKIP() << "no ezdxf";
    TemporaryFolder folder;
    const std::string script =
        "ezdxf.options.write_fixed_meta_data_for_testing = True\n"
        "for version in ('R12', 'R2000', 'R2004', 'R2007', 'R2010', 'R2013', 'R2018'):\n"
        "    doc = ezdxf.new(version, setup=True)\n"
        "    doc.appids.new('APP')\n"
        "    msp = doc.modelspace()\n"
        "    b = doc.blocks.new('B')\n"
        "    b.add_attdef('TAG', (0, 0))\n"
        "    i = msp.add_blockref('B', (1, 2, 3))\n"
        "    i.add_attrib('TAG', 'Stra\xC3\x9F"
        "e \xE2\x82\xAC', (1, 2))\n"
        "    t = msp.add_text('\xCE\xA9 is outside of the page, \xC3\xA9 is not')\n"
        "    t.set_xdata('APP', [(1000, 'x'), (1010, (1, 2, 3)), (1071, -5), (1004, b'\\x01\\xff')])\n"
        "    if version != 'R12':\n"
        "        msp.add_lwpolyline([(0, 0, 0, 0, 1), (5, 5), (9, 0)], format='xyseb', close=True)\n"
        "        msp.add_mtext('long ' * 100)\n"
        "        msp.add_spline([(0, 0), (1, 2), (3, 1)])\n"
        "        h = msp.add_hatch(); h.paths.add_polyline_path([(0, 0), (1, 0), (1, 1)])\n"
        "        x = doc.rootdict.add_xrecord('MY_RECORD')\n"
        "        x.reset([(1, 'text'), (40, 1.5), (90, 7), (330, '0'), (10, (1, 2, 3))])\n"
        "    for form, name in (('asc', 'text'), ('bin', 'binary')):\n"
        "        doc.saveas(path + '/' + version + name + '.dxf', fmt=form)\n";
    ASSERT_EQ(python(folder, script, folder / "."), "");
    for (const char* version : {"R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"}) {
        SCOPED_TRACE(version);
        std::string text = *files::read(folder / (std::string(version) + "text.dxf")), error;
        expectSameTags(text, saved(text));
        auto drawing = readDxf(folder / (std::string(version) + "binary.dxf"), error);
        ASSERT_TRUE(drawing) << error;
        EXPECT_EQ(versionName(drawing->version()), version);
        DxfFormat asText = drawing->format();
        asText.binary = false;
        expectSameTags(text, format(*drawing, asText));
        bool found = false;
        for (ObjectId id = drawing->firstEntity(); id; id = drawing->nextEntity(id))
            found =
                found || textOf(drawing->groups(id), 1) == "\xCE\xA9 is outside of the page, \xC3\xA9 is not";
        EXPECT_TRUE(found);
    }
}

TEST(Files, KeepWhatTheHostDoesNotUnderstand) {
    std::string content =
        lines("0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|9 $ODD|70 1|40 2.5|9 $HANDSEED|5 FF|0 ENDSEC") +
        lines("0 SECTION|2 CLASSES|0 CLASS|1 WIDGET|2 AcDbWidget|0 ENDSEC") +
        lines("0 SECTION|2 TABLES|0 TABLE|2 GADGETS|5 1|70 1|0 GADGET|5 2|2 G|0 ENDTAB|0 ENDSEC") +
        lines(
            "0 SECTION|2 ENTITIES|0 WIDGET|5 3|102 {OWN|330 4|102 }|100 AcDbEntity|8 0|62 300|310 0AFF|310 "
            "odd|290 1|"
            "10 1.5|40 7.0|1001 APP|1000  leading and trailing |1004 0A|101 Embedded Object|70 1|10 1.0|20 "
            "0.0|30 0.0|"
            "0 LINE|5 9|100 AcDbEntity|8 0|100 AcDbLine|10 1.0|20 2.0|11 3.0|21 4.0|0 ENDSEC") +
        lines("0 SECTION|2 OBJECTS|0 THING|5 5|330 xyz|160 9007199254740993|90 -1|0 ENDSEC") +
        lines("0 SECTION|2 THUMBNAILIMAGE|90 3|310 010203|0 ENDSEC") +
        lines(
            "0 SECTION|2 ACDSDATA|70 2|71 6|0 ACDSSCHEMA|90 0|1 X|0 ENDSEC|0 SECTION|2 NEW_SECTION|0 A|1 b|0 "
            "ENDSEC|0 EOF");
    expectSameTags(content, saved(content));
}

TEST(Files, EntitiesWithoutAHandleGetOneThatNobodyHas) {
    auto drawing = parse(
        lines("0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $HANDSEED|5 10|0 ENDSEC") +
        lines(
            "0 SECTION|2 ENTITIES|0 POINT|8 0|10 1.0|20 2.0|0 POINT|5 10|8 0|10 3.0|20 4.0|0 ENDSEC|0 EOF"));
    ASSERT_TRUE(drawing);
    const ObjectId first = drawing->firstEntity(), second = drawing->nextEntity(first);
    EXPECT_EQ(drawing->object(second).handle, 0x10u);
    EXPECT_GT(drawing->object(first).handle, 0x10u) << "whatever the file says is free";
    EXPECT_EQ(drawing->byHandle(0x10), second);
}

TEST(Files, KeepTheirLineEndsAndLoseTheirComments) {
    std::string content = "999\r\nmade by hand\r\n" +
                          lines("0 SECTION|2 ENTITIES|0 POINT|5 1|8 0|10 0.0|20 0.0|0 ENDSEC|0 EOF");
    std::string again = saved(content);
    EXPECT_NE(again.find("POINT\r\n"), std::string::npos);
    EXPECT_EQ(again.find("by hand"), std::string::npos);
    expectSameTags(content, again);
    expectSameTags(content, saved("\xEF\xBB\xBF" + content)) /* a byte order mark */;
}

// --- Text ---------------------------------------------------------------------------------------------

TEST(Texts, AreDecodedByTheCodePageAndComeBackByteForByte) {
    struct Case {
        std::string page, bytes, utf8;
    };
    const Case cases[] = {
        {"ANSI_1252",
         "Stra\xDF"
         "e \x80",
         "Stra\xC3\x9F"
         "e \xE2\x82\xAC"},
        {"ansi_1251", "\xCC\xE8\xF0", "\xD0\x9C\xD0\xB8\xD1\x80"},
        {"DOS437", "\x81", "\xC3\xBC"},
        {"ANSI_1252", "\\U+03A9", "\xCE\xA9"},
        {"ANSI_1252", "\\U+D83D\\U+DE00", "\xF0\x9F\x98\x80"},
        {"ANSI_1252", "\\U+00E9 \\U+0041 \\U+D83D \\U+", "\\U+00E9 \\U+0041 \\U+D83D \\U+"},
        {"ANSI_1252", "\\U+03a9 \\U+03A9", "\xCE\xA9 \\U+03A9"},
        {"ANSI_1252", "\\U+2160 \\U+20Ae", "\xE2\x85\xA0 \\U+20Ae"},
        {"ANSI_1252", "\\M+182A0", "\\M+182A0"},
        {"ANSI_1252", "a^Jb^Mc^I ^ ^", "a\nb\rc^I ^ ^"},
        {"ANSI_932", "\x83\x65",
         "\xC2\x83"
         "e"},
    };
    for (const Case& c : cases) {
        std::string content =
            entitiesFile("9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 " + c.page, "0 TEXT|5 1|1 " + c.bytes);
        auto drawing = parse(content);
        ASSERT_TRUE(drawing);
        EXPECT_EQ(textOf(drawing->groups(drawing->firstEntity()), 1), c.utf8);
        expectSameTags(content, format(*drawing, drawing->format()));
    }
    std::string utf8 =
        entitiesFile("9 $ACADVER|1 AC1021|9 $DWGCODEPAGE|3 ANSI_1252", "0 TEXT|5 1|1 \xCE\xA9\\U+00E9 \xFF");
    auto drawing = parse(utf8);
    EXPECT_EQ(textOf(drawing->groups(drawing->firstEntity()), 1), "\xCE\xA9\\U+00E9 \xFF");
    expectSameTags(utf8, format(*drawing, drawing->format()));
}

// --- Other versions -----------------------------------------------------------------------------------

TEST(Conversion, GoesBothWaysBetweenVersionsWithSubclasses) {
    if (!ezdxfIsInstalled() || !files::exists(kSurvey)) GTEST_SKIP();
    TemporaryFolder folder;
    std::string error;
    auto drawing = readDxf(kSurvey, error);
    ASSERT_TRUE(drawing) << error;
    auto& arena = drawing->arena();
    std::vector<Group> given{arena.text(0, "TEXT"), arena.point(10, 0, 0, 0), realGroup(40, 1),
                             integerGroup(420, 255), arena.text(1, "\xCE\xA9 \xC3\xA9")},
        built;
    ASSERT_TRUE(buildEntity(*drawing, drawing->modelSpace(), given, built));
    drawing->appendEntity(drawing->modelSpace(), built);
    const std::string script =
        "doc = ezdxf.readfile(path)\n"
        "t = doc.modelspace()[-1]\n"
        "audit = doc.audit()\n"
        "print(doc.dxfversion, len(doc.modelspace()), t.dxf.text.replace('\\\\U+03A9', '\xCE\xA9'), "
        "t.dxf.get('true_color'), "
        "len(audit.errors))\n";
    // Up from R2000, and from there down again: R2000 has no true colours.
    for (auto version : {DrawingVersion::R2018, DrawingVersion::R2007, DrawingVersion::R2000}) {
        std::string path = folder / (versionName(version) + ".dxf");
        ASSERT_TRUE(writeDxf(*drawing, path, {.version = version}, error)) << error;
        drawing = readDxf(path, error);
        ASSERT_TRUE(drawing) << error;
        EXPECT_EQ(python(folder, script, path), versionText(version) + " 526 \xCE\xA9 \xC3\xA9 " +
                                                    (version == DrawingVersion::R2000 ? "None" : "255") +
                                                    " 0\n");
    }
}

TEST(Conversion, IsRefusedWhereSomethingWouldBeLost) {
    std::string content, error;
    auto r12 = blankDrawing(DrawingVersion::R12);
    EXPECT_FALSE(formatDxf(*r12, {.version = DrawingVersion::R2000}, content, error));
    EXPECT_EQ(error, "A drawing of version R12 cannot be saved as R2000.");
    EXPECT_FALSE(formatDxf(*blankDrawing(), {.version = DrawingVersion::R12}, content, error));
    auto mesh = parse(entitiesFile("9 $ACADVER|1 AC1024", "0 MESH|5 1|8 0"));
    EXPECT_FALSE(formatDxf(*mesh, {.version = DrawingVersion::R2007}, content, error));
    EXPECT_EQ(error, "A drawing with a MESH cannot be saved as R2007, but as R2010 or later.");
    auto large = parse(entitiesFile("9 $ACADVER|1 AC1015", "0 POINT|5 1|8 0|70 70000"));
    EXPECT_FALSE(formatDxf(*large, {.version = DrawingVersion::R2000, .binary = true}, content, error));
    EXPECT_EQ(error, "A binary file cannot hold the number 70000 in group 70.");
}

// --- Handles and blank drawings -----------------------------------------------------------------------

TEST(Handles, AreGivenToEntitiesOfOldDrawingsThatHaveNone) {
    auto drawing = parse(entitiesFile(
        "9 $ACADVER|1 AC1009|9 $HANDLING|70 0",
        "0 POLYLINE|8 0|66 1|0 VERTEX|8 0|10 0.0|20 0.0|0 SEQEND|0 LINE|5 7|8 0|0 POINT|67 1|8 0"));
    ASSERT_TRUE(drawing);
    EXPECT_FALSE(drawing->modified());
    std::string content = format(*drawing, drawing->format());
    EXPECT_NE(content.find("POLYLINE\n  5\n8\n"), std::string::npos) << content;
    EXPECT_NE(content.find("SEQEND\n  5\nA\n"), std::string::npos);
    EXPECT_EQ(drawing->headerInteger("$HANDLING"), 1);
    ObjectId line = drawing->byHandle(7);
    EXPECT_EQ(drawing->type(line), "LINE");
    EXPECT_EQ(drawing->object(drawing->firstEntity()).handle, 8u);
    EXPECT_EQ(drawing->type(drawing->firstEntityOf(drawing->paperSpace())), "POINT");
    // The spaces that stand for those that the file lacks are not written.
    EXPECT_EQ(content.find("BLOCKS"), std::string::npos);
}

TEST(Blank, DrawingsPassTheAuditInEveryVersion) {
    if (!ezdxfIsInstalled()) GTEST_SKIP();
    TemporaryFolder folder;
    for (auto version :
         {DrawingVersion::R12, DrawingVersion::R2000, DrawingVersion::R2004, DrawingVersion::R2007,
          DrawingVersion::R2010, DrawingVersion::R2013, DrawingVersion::R2018}) {
        std::string error, path = folder / "blank.dxf";
        auto drawing = blankDrawing(version);
        ASSERT_TRUE(drawing);
        EXPECT_EQ(drawing->version(), version);
        ASSERT_TRUE(writeDxf(*drawing, path, drawing->format(), error)) << error;
        EXPECT_EQ(auditOf(folder, path), "");
    }
}

// --- Bad input ----------------------------------------------------------------------------------------

TEST(BadFiles, AreRefusedWithThePlaceOfTheFault) {
    const std::string head = lines("0 SECTION|2 ENTITIES");
    const std::pair<std::string, std::string> cases[] = {
        {"", "Line 0: the file holds no drawing."},
        {"\n\n  \n", "the file holds no drawing."},
        {"hello", "Line 1: a group code is expected, but the line is \"hello\"."},
        {std::string("\0\1\2\3", 4), "Line 1: a group code is expected, but the line is \"????\"."},
        {head + "0\nLINE\n8\n", "Line 7: the file ends behind a group code."},
        {head + "0\nLINE\n8x\nlayer\n", "Line 7: a group code is expected, but the line is \"8x\"."},
        {head + lines("0 LINE|1072 0"), "Line 7: group code 1072 is out of range."},
        {head + lines("0 LINE|-5 0"), "Line 7: group code -5 is out of range."},
        {head + lines("0 LINE|99999999999999999999 0"), "is out of range."},
        {head + lines("0 LINE|10 1.5x"), "Line 8: group 10 needs a number, but the line is \"1.5x\"."},
        {head + lines("0 LINE|10 1.5|20 "), "Line 10: group 20 needs a number, but the line is \"\"."},
        {head + lines("0 LINE|40 1e999"), "Line 8: group 40 needs a number"},
        {head + lines("0 LINE|40 none"), "needs a number"},
        {head + lines("0 LINE|70 1.5"), "Line 8: group 70 needs a whole number, but the line is \"1.5\"."},
        {head + lines("0 LINE|90 99999999999999999999"), "needs a whole number"},
        {lines("0 SECTION|0 ENDSEC|0 EOF"), "the name of the section is missing."},
        {lines("0 LINE|0 EOF"), "Line 2: a SECTION or EOF is expected here."},
        {lines("5 1|0 EOF"), "Line 2: a SECTION is expected here."},
        {head + lines("0 LINE|8 0|0 ENDSEC|999 remark|x"), "Line 13: a group code is expected"},
    };
    for (const auto& [content, expected] : cases)
        EXPECT_NE(errorOf(content).find(expected), std::string::npos) << errorOf(content);
}

TEST(BadFiles, ThatAreBinaryAreRefusedWithThePlaceToo) {
    auto drawing = blankDrawing();
    std::string whole = format(*drawing, {.version = DrawingVersion::R2000, .binary = true});
    // Cut within a group it is no drawing. Cut between two it is one, and it is said what is missing.
    size_t end = whole.size() - 6;
    int refused = 0, mended = 0;
    for (size_t size = 22; size < end; size += size < 400 ? 1 : 37) {
        std::string error;
        std::vector<std::string> remarks;
        if (parseDxf(whole.substr(0, size), error, &remarks)) {
            ++mended;
            EXPECT_FALSE(remarks.empty()) << size;
        } else {
            ++refused;
            EXPECT_TRUE(error.rfind("Byte ", 0) == 0) << size << ": " << error;
        }
    }
    EXPECT_GT(mended, 20);
    EXPECT_GT(refused, 300);
    std::string error;
    EXPECT_TRUE(parseDxf(whole.substr(0, end), error)) << error;
    size_t code = whole.find(std::string("\x09\0$ACADVER", 10));
    ASSERT_NE(code, std::string::npos);
    whole[code + 1] = '\x7F';
    EXPECT_EQ(errorOf(whole), "Byte " + std::to_string(code) + ": group code 32521 is out of range.");
}

TEST(BadFiles, ThatLackOnlyTheLastLineAreRead) {
    std::string content = lines("0 SECTION|2 ENTITIES|0 POINT|5 1|8 0|0 ENDSEC");
    std::string error;
    EXPECT_TRUE(parseDxf(content, error)) << error;
}

// --- Files of other programs that are mended -----------------------------------------------------------

namespace {

struct Mended {
    std::string content;
    std::vector<std::string> saved;    // the tags of the saved file
    std::vector<std::string> remarks;  // what was told
};

void expectMended(const Mended& expected) {
    std::string error;
    std::vector<std::string> remarks;
    auto drawing = parseDxf(expected.content, error, &remarks);
    ASSERT_TRUE(drawing) << error << "\n" << expected.content;
    EXPECT_EQ(remarks, expected.remarks);
    std::string once = format(*drawing, drawing->format());
    EXPECT_EQ(tagsOf(once), expected.saved);
    EXPECT_EQ(saved(once), once);
}

}  // namespace

TEST(MendedFiles, KeepWhatStandsBetweenSections) {
    const std::string header = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|";
    const std::vector<std::string> kept = tagsOf(
        lines(header + "9 $LTSCALE|40 2.5|9 $DWGCODEPAGE|3 ANSI_1251|0 ENDSEC|0 SECTION|2 ENTITIES|0 ENDSEC|"
                       "0 EOF"));
    // Variables behind the end of the header are variables, and say how the texts of the file are to be read.
    const std::string behind = lines(header +
                                     "0 ENDSEC|9 $LTSCALE|40 2.5|9 $DWGCODEPAGE|3 ANSI_1251|0 SECTION|"
                                     "2 ENTITIES|0 ENDSEC|0 EOF");
    expectMended({behind, kept, {"Line 12: what stands behind the end of section HEADER is kept in it."}});
    EXPECT_EQ(parse(behind)->headerReal("$LTSCALE"), 2.5);
    EXPECT_EQ(parse(behind)->codePage(), 1251);
    // An entity belongs to the entities; groups that belong to nothing have no place.
    const std::string point = "0 POINT|5 A|8 0|10 1|20 2";
    expectMended({lines("0 SECTION|2 ENTITIES|0 ENDSEC|8 0|70 5|" + point + "|0 EOF"),
                  tagsOf(lines("0 SECTION|2 ENTITIES|" + point + "|0 ENDSEC|0 EOF")),
                  {"Line 8: what stands behind the end of section ENTITIES is left out.",
                   "Line 12: what stands behind the end of section ENTITIES is kept in it."}});
    expectMended({lines("0 SECTION|2 HEADER|9 $LTSCALE|40 2|0 ENDSEC|" + point + "|0 EOF"),
                  tagsOf(lines("0 SECTION|2 HEADER|9 $LTSCALE|40 2|0 ENDSEC|0 EOF")),
                  {"Line 12: what stands behind the end of section HEADER is left out."}});
}

TEST(MendedFiles, EndTheirSectionsWhereTheNextBegins) {
    const std::string first = "0 SECTION|2 TABLES", point = "0 SECTION|2 ENTITIES|0 POINT|5 A|8 0|10 1|20 2";
    const std::vector<std::string> whole = tagsOf(lines(first + "|0 ENDSEC|" + point + "|0 ENDSEC|0 EOF"));
    expectMended(
        {lines(first + "|" + point + "|0 ENDSEC|0 EOF"), whole, {"Line 6: section TABLES has no end."}});
    expectMended(
        {lines(first + "|0 ENDSEC|" + point + "|0 EOF"), whole, {"Line 22: section ENTITIES has no end."}});
    expectMended(
        {lines(first + "|0 ENDSEC|" + point),
         whole,
         {"Line 20: the file ends within section ENTITIES.", "Line 20: the file ends without EOF."}});
    expectMended({lines(first + "|0 ENDSEC|" + point + "|0 ENDSEC") + "\x1A",
                  whole,
                  {"Line 23: the file ends without EOF."}});
    expectMended({lines(first + "|0 ENDSEC|" + point + "|0 ENDSEC|0 EOF|0 SECTION"),
                  whole,
                  {"Line 24: what stands behind EOF is left out."}});
}

TEST(MendedFiles, MayHaveWrongLineEnds) {
    const std::string content =
        lines("0 SECTION|2 ENTITIES|0 TEXT|5 A|8 |10 1|20 2|1 one, two|0 ENDSEC|0 EOF");
    const std::vector<std::string> whole = tagsOf(content);
    auto withEnds = [&](auto endOf) {
        std::string out;
        int line = 0;
        for (char c : content) c == '\n' ? out += endOf(++line) : out += c;
        return out;
    };
    auto remark = [](int line) {
        return "Line " + std::to_string(line) + ": a carriage return stands without its line feed.";
    };
    // Nothing but carriage returns; one of them among the usual ends; one too many.
    expectMended({withEnds([](int) { return "\r"; }), whole, {remark(1)}});
    for (int odd : {1, 6, 7, 10, 16}) {
        expectMended({withEnds([&](int line) { return line == odd ? "\r" : "\r\n"; }), whole, {remark(odd)}});
        expectMended({withEnds([&](int line) { return line == odd ? "\r" : "\n"; }), whole, {remark(odd)}});
        expectMended(
            {withEnds([&](int line) { return line == odd ? "\r\r\n" : "\r\n"; }), whole, {remark(odd)}});
    }
    // One within a text is the text's, and is saved as texts have it.
    std::string within = content;
    within[within.find("one, ") + 4] = '\r';
    std::vector<std::string> escaped = whole;
    std::replace(escaped.begin(), escaped.end(), std::string("1 one, two"), std::string("1 one,^Mtwo"));
    expectMended({within, escaped, {remark(16)}});
}

TEST(MendedFiles, TellOfNumbersThatAreNone) {
    std::string entities = "0 POINT|5 A|8 0|10 nan|20 1.#QNAN|30 -inf";
    std::vector<std::string> remarks;
    std::string error;
    ASSERT_TRUE(parseDxf(entitiesFile("9 $LTSCALE|40 1", entities), error, &remarks));
    EXPECT_EQ(remarks, (std::vector<std::string>{"Line 22: the number of group 10 is none.",
                                                 "Line 24: the number of group 20 is none.",
                                                 "Line 26: the number of group 30 is none."}));
    // A drawing full of them does not fill the command line.
    std::string many;
    for (int i = 0; i < 1000; ++i) many += "|40 nan";
    ASSERT_TRUE(parseDxf(entitiesFile("9 $LTSCALE|40 1", "0 POINT|5 A|8 0" + many), error, &remarks));
    ASSERT_EQ(remarks.size(), 21u);
    EXPECT_EQ(remarks.back(), "There are 980 more.");
}

TEST(MendedFiles, AreWhatTheirHeaderSaysAndNothingElse) {
    const std::string version = "9 $ACADVER|1 AC1032";
    EXPECT_EQ(parse(entitiesFile(version, ""))->version(), DrawingVersion::R2018);
    EXPECT_EQ(parse(lines("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF|0 SECTION|2 HEADER|" + version))->version(),
              DrawingVersion::R12);
    EXPECT_EQ(
        parse(lines("0 SECTION|2 ENTITIES|0 INSERT|2 HEADER|" + version + "|0 ENDSEC|0 EOF"))->version(),
        DrawingVersion::R12);
    std::optional<std::string> odd = files::read(NORVANE_SHARED_DATA "/odd/saved_twice.dxf");
    if (!odd) GTEST_SKIP() << "no drawing of a fuzzer";
    std::string once = saved(*odd);
    EXPECT_EQ(saved(once), once);
}

TEST(BadFiles, LeaveTheOldFileWhenSavingFails) {
    TemporaryFolder folder;
    std::string error, path = folder / "drawing.dxf";
    auto drawing = blankDrawing();
    EXPECT_FALSE(writeDxf(*drawing, folder / "missing/drawing.dxf", drawing->format(), error));
    EXPECT_EQ(error, "Cannot write " + (folder / "missing/drawing.dxf") + ".");
    EXPECT_EQ(readDxf(path, error), nullptr);
    EXPECT_EQ(error, path + ": The file cannot be read.");
    files::replace(path, "old");
    EXPECT_FALSE(writeDxf(*drawing, path, {.version = DrawingVersion::R12}, error));
    EXPECT_EQ(files::read(path), "old");
    EXPECT_EQ(readDxf(path, error), nullptr);
    EXPECT_EQ(error, path + ": Line 1: a group code is expected, but the line is \"old\".");
    EXPECT_EQ(readDxf(folder / ".", error), nullptr);
}
