// Lines of text, their pieces, and the blocks of note files.
#include "module/exchange/delimited_text.h"

#include <gtest/gtest.h>

#include "module/exchange/note_blocks.h"
#include "module/exchange/text_lines.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;
using Pieces = std::vector<std::string>;

namespace {

std::optional<Pieces> split(std::string_view line, char delimiter = ',', bool quoted = false) {
    return SplitLine(TrimmedLine(line, delimiter), {delimiter, std::nullopt, quoted});
}

Pieces linesOf(const std::string& path, size_t mostCharacters = 0) {
    std::optional<TextLines> file = TextLines::open(path, mostCharacters);
    Pieces lines;
    while (file)
        if (std::optional<std::string> line = file->next())
            lines.push_back(*line);
        else
            break;
    return lines;
}

}  // namespace

TEST(DelimitedText, DelimitersHaveNamesAndAnyOtherTextIsAComma) {
    EXPECT_EQ(DelimiterOf("Comma"), ',');
    EXPECT_EQ(DelimiterOf("Colon"), ':');
    EXPECT_EQ(DelimiterOf("Semicolon"), ';');
    EXPECT_EQ(DelimiterOf("Space"), ' ');
    EXPECT_EQ(DelimiterOf("Tab"), '\t');
    for (const char* other : {"", "tab", "Bar"}) EXPECT_EQ(DelimiterOf(other), ',') << other;
}

TEST(DelimitedText, EachDelimiterEndsAPieceAndEmptyOnesCount) {
    EXPECT_EQ(split("1,2,,4,"), (Pieces{"1", "2", "", "4", ""}));
    EXPECT_EQ(split(",\r"), (Pieces{"", ""}));
    EXPECT_EQ(split(" a , b "), (Pieces{"a ", " b"}));
    EXPECT_EQ(split(" \t\r\n"), Pieces{});
    // White space that is the delimiter is not cut off.
    EXPECT_EQ(split("\t1\t\t \r", '\t'), (Pieces{"", "1", "", ""}));
    EXPECT_EQ(split(" 1  2\t", ' '), (Pieces{"", "1", "", "2"}));
}

TEST(DelimitedText, QuotesHoldDelimitersWhereTheyAreWanted) {
    EXPECT_EQ(split("1,\"SMITH, JOHN\",x", ',', true), (Pieces{"1", "SMITH, JOHN", "x"}));
    EXPECT_EQ(split("\"A \"\"B\"\" C\", \"D\" ,\"\"", ',', true), (Pieces{"A \"B\" C", "D", ""}));
    EXPECT_EQ(split("5\" pipe,6\"", ',', true), (Pieces{"5\" pipe", "6\""}));
    EXPECT_EQ(split("1,\"never closed,2", ',', true), std::nullopt);
    EXPECT_EQ(split("1,\"never closed", ','), (Pieces{"1", "\"never closed"}));
    EXPECT_EQ(split("a \"b c\" d", ' ', true), (Pieces{"a", "b c", "d"}));
}

TEST(DelimitedText, HeadingsAreTextAboveNumbers) {
    EXPECT_TRUE(LooksLikeHeadings({"Point", "North"}, {"A1", "12.5"}));
    EXPECT_TRUE(LooksLikeHeadings({"Punkt", "Nord"}, {"1", "480899,803"}));
    EXPECT_FALSE(LooksLikeHeadings({"Point", "1"}, {"A1", "12.5"}));
    EXPECT_FALSE(LooksLikeHeadings({"Point", " "}, {"A1", "12.5"}));
    EXPECT_FALSE(LooksLikeHeadings({"Point", "North"}, {"A1", "B2"}));
    EXPECT_FALSE(LooksLikeHeadings({"Point", "North"}, {"A1", "12.5", "x"}));
}

TEST(TextFile, LinesAreOf1252UnlessAMarkSaysUtf8) {
    ScratchFolder folder;
    writeFile(folder("old.txt"),
              "N\xDA\xD1"
              "EZ\r\nB\n");
    EXPECT_EQ(linesOf(folder("old.txt")), (Pieces{"NÚÑEZ", "B"}));
    writeFile(folder("new.txt"), "\xEF\xBB\xBFÜmlaut\nŁ\n\n");
    EXPECT_EQ(linesOf(folder("new.txt")), (Pieces{"Ümlaut", "Ł", ""}));
    writeFile(folder("nul.txt"), std::string("a\0b\nlast", 8));
    EXPECT_EQ(linesOf(folder("nul.txt")), (Pieces{"a b", "last"}));
    writeFile(folder("empty.txt"), "");
    EXPECT_EQ(linesOf(folder("empty.txt")), Pieces{});
    EXPECT_FALSE(TextLines::open(folder("none.txt")));
    EXPECT_FALSE(TextLines::open(folder.path()));
}

TEST(TextFile, ALineThatIsTooLongGoesOnInTheNext) {
    ScratchFolder folder;
    const std::string full(327, 'x');
    writeFile(folder("long.txt"), full + "\r\n" + full + "y\n" + full + full + full + "z");
    EXPECT_EQ(linesOf(folder("long.txt"), 327), (Pieces{full, full, "y", full, full, full, "z"}));
    // Characters count, not bytes.
    std::string umlauts = "\xEF\xBB\xBF";
    for (int i = 0; i < 328; ++i) umlauts += "ü";
    writeFile(folder("utf8.txt"), umlauts);
    EXPECT_EQ(linesOf(folder("utf8.txt"), 327).at(1), "ü");
    const std::string huge(10 * 1024 * 1024, 'q');
    writeFile(folder("huge.txt"), huge + "\nend\n");
    EXPECT_EQ(linesOf(folder("huge.txt")), (Pieces{huge, "end"}));
}

TEST(TextFile, ThePreviewReadsNoMoreThanItShows) {
    ScratchFolder folder;
    writeFile(folder("large.txt"), "1,2\n3,4\n");
    std::filesystem::resize_file(folder("large.txt"), 2ull * 1024 * 1024 * 1024 + 1);
    const auto lines = ReadFirstLines(folder("large.txt"), 200);
    ASSERT_TRUE(lines);
    // What follows is a part of a line.
    EXPECT_EQ(*lines, (Pieces{"1,2", "3,4"}));
    EXPECT_EQ(ReadFirstLines(folder("large.txt"), 1), Pieces{"1,2"});
    EXPECT_FALSE(ReadFirstLines(folder("none.txt"), 1));
}

TEST(NoteBlocks, HeadingsNameThePointAndTheFileOfItsFeature) {
    ScratchFolder folder;
    writeFile(folder("a.not"),
              "in front\n\nPT_ID:1  GIS_FILE:TREE.GIS\r\n  SPECIES,OAK  \n\n"
              "PT_ID: 2\nx\n  PT_ID:3GIS_FILE: pole.V2.gis \npt_id:4\nPT_ID:\nPT_ID:5  GIS_FILE:");
    const auto blocks = ReadNoteBlocks(folder("a.not"));
    ASSERT_TRUE(blocks);
    ASSERT_EQ(blocks->size(), 5u);
    EXPECT_EQ((*blocks)[0].id, "1");
    EXPECT_EQ((*blocks)[0].file, "TREE.GIS");
    EXPECT_EQ((*blocks)[0].lines, Pieces{"SPECIES,OAK"});
    EXPECT_EQ((*blocks)[1].id, "2");
    EXPECT_FALSE((*blocks)[1].file);
    EXPECT_EQ((*blocks)[2].id, "3");
    EXPECT_EQ((*blocks)[2].file, "pole.V2.gis");
    EXPECT_EQ((*blocks)[2].lines, Pieces{"pt_id:4"});
    EXPECT_EQ((*blocks)[3].id, "");
    EXPECT_EQ((*blocks)[4].file, "");
    EXPECT_FALSE(ReadNoteBlocks(folder("none.not")));
}

TEST(NoteBlocks, FeaturesAreCalledAsTheirFilesUpToTheFirstPoint) {
    EXPECT_EQ(FeatureOfNoteFile("POLE.GIS"), "POLE");
    EXPECT_EQ(FeatureOfNoteFile("tree.v2.gis"), "TREE");
    EXPECT_EQ(FeatureOfNoteFile("C:\\JOBS.1\\mh.gis"), "MH");
    for (const char* nothing : {"", "  ", ".GIS"})
        EXPECT_EQ(FeatureOfNoteFile(nothing), "UNKNOWN") << nothing;
}
