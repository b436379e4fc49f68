#include "module/images/image_rows.h"

#include <gtest/gtest.h>

using namespace norvane;

namespace {

// Columns and values of a record; every path is a file but those that say that they are gone.
ImageRows rowsOf(std::vector<std::pair<std::string, std::string>> columns) {
    LoadedRecord record;
    record.found = true;
    for (auto& [column, value] : columns) {
        record.columns.push_back(column);
        record.values[column] = value;
    }
    ImageRows rows;
    rows.load(record,
              [](const std::string& path) { return path.find("gone") == path.npos ? path : std::string(); });
    return rows;
}

std::string fieldsOf(const ImageRows& rows) {
    std::string all;
    for (const OutputField& field : rows.fields())
        all += field.name + "=" + field.value + (field.clears ? "!" : "") + ";";
    return all;
}

}  // namespace

TEST(ImageRows, StandInTheOrderOfTheColumns) {
    ImageRows rows = rowsOf({{"PT_ID", "1"},
                             {"IMAGE_ZGEO/10", "ten.jpg"},
                             {"LABEL/10", "crown"},
                             {"IMAGE_ZGEO/2", ""},
                             {"LABEL/7", "no image"},
                             {"IMAGE_ZGEO/1", "one.jpg"}});
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows.rows()[0].column, "IMAGE_ZGEO/10");
    EXPECT_EQ(rows.current(), 0);
    EXPECT_EQ(rows.count(), 2);
    EXPECT_EQ(rows.nth(2), 2);
    EXPECT_EQ(rows.nth(3), -1);
    EXPECT_EQ(rows.free(), 1);
    EXPECT_EQ(rows.numberOf(3), 11) << "one more than the highest";
    EXPECT_EQ(fieldsOf(rows),
              "IMAGE_ZGEO/10=ten.jpg;LABEL/10=crown;IMAGE_ZGEO/2=;LABEL/2=;IMAGE_ZGEO/1=one.jpg;LABEL/1=;"
              "LABEL/7=no image;");
}

TEST(ImageRows, TheFirstRowThatHasAnImageIsShown) {
    EXPECT_EQ(rowsOf({{"IMAGE_ZGEO/1", "No image!"}, {"IMAGE_ZGEO/2", "two.jpg"}}).current(), 1);
    EXPECT_EQ(rowsOf({{"IMAGE_ZGEO/1", "gone.jpg"}}).current(), -1);
}

TEST(ImageRows, WhatNobodyTouchesStays) {
    ImageRows rows =
        rowsOf({{"IMAGE_ZGEO/1", "gone.jpg"}, {"IMAGE_ZGEO/2", "No image!"}, {"IMAGE_ZGEO/3", ""}});
    EXPECT_EQ(rows.count(), 0);
    EXPECT_EQ(rows.free(), 1) << "a row whose file is gone is not free";
    EXPECT_EQ(fieldsOf(rows),
              "IMAGE_ZGEO/1=gone.jpg;LABEL/1=;IMAGE_ZGEO/2=No image!;LABEL/2=;IMAGE_ZGEO/3=;LABEL/3=;");
}

TEST(ImageRows, AnEmptiedRowIsToldAndLosesItsLabel) {
    ImageRows rows =
        rowsOf({{"IMAGE_ZGEO/1", "one.jpg"}, {"LABEL/1", "crown"}, {"IMAGE_ZGEO/2", "gone.jpg"}});
    rows.empty(0);
    EXPECT_EQ(rows.current(), -1);
    rows.empty(1);
    EXPECT_EQ(fieldsOf(rows), "IMAGE_ZGEO/1=No image!;LABEL/1=!;IMAGE_ZGEO/2=No image!;LABEL/2=!;");
    rows.put(rows.free(), "new.jpg");
    EXPECT_EQ(fieldsOf(rows), "IMAGE_ZGEO/1=new.jpg;LABEL/1=!;IMAGE_ZGEO/2=No image!;LABEL/2=!;");
}

TEST(ImageRows, PositionsCountImagesAndNotRows) {
    ImageRows rows = rowsOf({{"IMAGE_ZGEO/1", "a.jpg"}, {"IMAGE_ZGEO/2", ""}, {"IMAGE_ZGEO/3", "c.jpg"}});
    EXPECT_EQ(rows.position(), 1);
    rows.choose(1);
    EXPECT_EQ(rows.position(), 1) << "a row without an image: those in front of it";
    rows.choose(2);
    EXPECT_EQ(rows.position(), 2);
    rows.choose(-1);
    EXPECT_EQ(rows.position(), 0);
    rows.put(3, "d.jpg");
    EXPECT_EQ(rows.rows()[3].column, "IMAGE_ZGEO/4");
}
