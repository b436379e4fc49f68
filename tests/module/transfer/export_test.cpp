// Shapes out of the drawing, from the Lisp function to files that other programs read.
#include "tests/module/transfer/export_fixture.h"

// --- Shapes --------------------------------------------------------------------------------------------

TEST_F(Export, PointsLinesAndAreasOfEachKind) {
    lisp(
        "(point '(1.0 2.0 3.0) '((\"PT#\" . \"7\") (\"DESC2\" . \"oak\")) nil)"
        "(point '(1.5 2.5 0.0) nil nil)"
        "(line '(0.0 0.0 5.0) '(3.0 4.0 5.0) nil)"
        "(polyline nil 7.0 '((0.0 0.0) (10.0 0.0) (20.0 0.0) (20.0 5.0)) nil)"
        "(old-polyline 8 '((0.0 0.0 1.0) (0.0 0.0 4.0) (0.0 4.0 4.0)) nil)"
        "(polyline t 2.0 '((0.0 0.0) (4.0 0.0) (4.0 3.0)) nil)"
        "(polyline t 0.0 '((0.0 0.0) (4.0 3.0) (4.0 0.0)) nil)");
    EXPECT_EQ(exported("INSERT", 1), "1\n2 points written to set.shp; 2 without a record\n");
    EXPECT_EQ(dump("set"),
              (Lines{"1 2", "0 [] [] 1 | 2 | 0 | 0", "1 [] [] 1.5 | 2.5 | 0 | 0",
                     "[['PT_ID', 'C', 32, 0], ['GIS_KEY', 'C', 50, 0], ['NORTHING', 'N', 12, 4], "
                     "['EASTING', 'N', 12, 4], ['DESCRIPTIO', 'C', 50, 0]]",
                     "7|UNKNOWN|||", "|UNKNOWN|||"}));
    exported("INSERT", 11);
    EXPECT_EQ(dump("set")[1], "0 [] [] 1 | 2 | 3 | 0");
    EXPECT_EQ(fieldsOf("set")["ELEVATION"], "N 12.4");

    // Lines keep their collinear vertices, and closed polylines lack their last side there.
    exported("LINE,LWPOLYLINE,POLYLINE", 3);
    Lines lines = dump("set");
    lines.resize(6);
    EXPECT_EQ(
        lines,
        (Lines{"3 5", "0 [0] [] 0 3 | 0 4 | 0 0 | 0 0", "1 [0] [] 0 10 20 20 | 0 0 0 5 | 0 0 0 0 | 0 0 0 0",
               "2 [0] [] 0 0 0 | 0 0 4 | 0 0 0 | 0 0 0", "3 [0] [] 0 4 4 | 0 0 3 | 0 0 0 | 0 0 0",
               "4 [0] [] 0 4 4 | 0 3 0 | 0 0 0 | 0 0 0"}));
    EXPECT_EQ(records("set"), (Lines{"1|UNKNOWN|", "2|UNKNOWN|", "3|UNKNOWN|", "4|UNKNOWN|", "5|UNKNOWN|"}));
    exported("LINE,LWPOLYLINE,POLYLINE", 13);
    EXPECT_EQ(dump("set")[3], "2 [0] [] 0 0 0 | 0 0 4 | 1 4 4 | 0 0 0");

    // Rings are closed and run clockwise, each from its own first vertex.
    exported("LINE,LWPOLYLINE", 15);
    lines = dump("set");
    EXPECT_EQ(lines[0], "15 3");  // an open polyline is one as well here
    EXPECT_EQ(lines[2], "1 [0] [] 0 4 4 0 | 0 3 0 0 | 2 2 2 2 | 0 0 0 0");
    EXPECT_EQ(lines[3], "2 [0] [] 0 4 4 0 | 0 3 0 0 | 0 0 0 0 | 0 0 0 0");
    EXPECT_EQ(fieldsOf("set")["AREA_DWG"], "N 12.4");

    EXPECT_EQ(exported("LINE", 5),
              "1\n0 polygons written to set.shp; 1 entity left out: 1 of another kind\n");
    EXPECT_EQ(dump("set"), (Lines{"5 0", dump("set")[1]}));
    for (const char* part : {".shp", ".shx", ".dbf"})
        EXPECT_TRUE(fs::exists(path(std::string("set") + part))) << part;
}

TEST_F(Export, EntitiesThatAreSeenFromBehindStandInTheWorld) {
    lisp(
        "(point '(-5.0 2.0 -3.0) nil '((210 0.0 0.0 -1.0)))"
        "(polyline nil -7.0 '((-1.0 0.0 1.0) (-11.0 0.0)) '((210 0.0 0.0 -1.0)))");
    exported("INSERT", 11);
    EXPECT_EQ(dump("set")[1], "0 [] [] 5 | 2 | 3 | 0");
    exported("LWPOLYLINE", 13);
    const Lines columns = text::split(dump("set")[1], '|');
    EXPECT_TRUE(columns[0].starts_with("0 [0] [] 1 ")) << columns[0];
    EXPECT_TRUE(text::trim(columns[0]).ends_with(" 11")) << columns[0];
    EXPECT_EQ(columns[1].find('-'), std::string::npos) << "the arc, turned over, runs above";
    EXPECT_TRUE(columns[2].starts_with(" 7 7 ")) << columns[2];
}

TEST_F(Export, WhatHasNoShapeIsCountedAndLeftOut) {
    lisp(
        "(point '(1e30 0.0 0.0) nil nil) (point '(9e29 0.0 0.0) nil nil) (point '(0.0 0.0 -1e30) nil nil)"
        "(polyline nil 0.0 '((1.0 1.0)) nil) (polyline t 0.0 '((1.0 1.0)) nil)"
        "(old-polyline 16 '((0.0 0.0 0.0 64) (1.0 0.0 0.0 64) (1.0 1.0 0.0 64) (0.0 1.0 0.0 64)) nil)"
        "(old-polyline 4 '((0.0 0.0 0.0 16) (0.0 0.0 0.0 8) (5.0 5.0 0.0 8) (9.0 0.0 0.0 8) (9.0 0.0 0.0 "
        "16)) nil)");
    EXPECT_EQ(exported("INSERT", 11),
              "1\n1 point written to set.shp; 2 entities left out: 2 with coordinates out of range; 1 "
              "without a record\n");
    EXPECT_EQ(exported("INSERT", 1),
              "1\n2 points written to set.shp; 1 entity left out: 1 with coordinates out of range; 2 without "
              "a record\n");
    EXPECT_EQ(exported("*", 3),
              "1\n1 line written to set.shp; 6 entities left out: 2 with fewer than two vertices, 1 mesh, 3 "
              "of another kind; "
              "1 without a record\n");
    EXPECT_EQ(dump("set")[1], "0 [0] [] 0 5 9 | 0 5 0 | 0 0 0 | 0 0 0");  // without the frame of the spline
}

// --- Records -------------------------------------------------------------------------------------------

TEST_F(Export, RecordsGoOutWithTheirShapes) {
    sql("create table OAKS (SPECIES TEXT(50), PT_ID TEXT(255), GIS_KEY TEXT(255), DBH DOUBLE, CROWN SINGLE, "
        "AGE LONG, "
        "RINGS SHORT, NOTE MEMO, SEEN DATETIME, ALIVE BIT, [IMAGE_ZGEO/1] TEXT(255), [LABEL/1] TEXT(255), "
        "NORTHING DOUBLE);"
        "insert into OAKS (SPECIES, PT_ID, GIS_KEY, DBH, CROWN, AGE, RINGS, NOTE, NORTHING) values "
        "('RED', 'A1', 'OAK', 0.5, 12.25, 0, -7, 'D''Angelo || Sons\\$\\$', 5), ('WHITE', 'a2', 'OAK', -0.5, "
        "100, 300, 0, '', 6),"
        "('', 'A3', 'PINE', 1, 1, 1, 1, 'first', 1), ('LIVE', 'A3', 'oak', 2, NULL, 2, 2, NULL, 2), "
        "('LATE', 'A3', 'OAK', 3, 3, 3, 3, 'third', 3), ('X', '', 'OAK', 4, 4, 4, 4, 'x', 4)");
    makeTemplate();
    EXPECT_EQ(::answer(path("template.mdb"),
                       "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into "
                       "ZGEO_LINKS values ('OAK', 'oaks')"),
              "");
    lisp(
        "(point '(1.0 0.0 0.0) '((\"PT#\" . \"1\") (\"DESC2\" . \"tree\")) (linked \"OAK\" \" A1 \"))"
        "(point '(2.0 0.0 0.0) nil (linked \"oak\" \"A2\"))"
        "(point '(3.0 0.0 0.0) nil (linked \" Oak \" \"A3\"))"
        "(point '(4.0 0.0 0.0) nil (linked \"OAK\" \"A9\"))");
    EXPECT_EQ(exported("INSERT", 1), "1\n4 points written to set.shp; 1 without a record\n");
    EXPECT_EQ(fieldsOf("set"), (std::map<std::string, std::string>{{"PT_ID", "C 32"},
                                                                   {"GIS_KEY", "C 50"},
                                                                   {"SPECIES", "C 50"},
                                                                   {"DBH", "N 12.4"},
                                                                   {"CROWN", "N 12.4"},
                                                                   {"AGE", "N 8"},
                                                                   {"RINGS", "N 8"},
                                                                   {"NOTE", "C 50"}}));
    // Of several records of one id that of the feature comes first, and then each gives what is missing.
    EXPECT_EQ(records("set"),
              (Lines{"A1|OAK|RED|0.5|12.25|0|-7|D'Angelo || Sons$$", "A2|OAK|WHITE|-0.5|100|300|0|",
                     "A3|oak|LIVE|2|3|2|2|third", "A9|||||||"}));
    // An area keeps what a point has from the drawing.
    lisp("(polyline t 0.0 '((0.0 0.0) (4.0 0.0) (4.0 3.0)) (linked \"OAK\" \"A1\"))");
    exported("LWPOLYLINE", 5);
    EXPECT_EQ(records("set"), (Lines{"A1|OAK|RED|0.5|12.25|0|-7|D'Angelo || Sons$$|5"}));
}

TEST_F(Export, LinksThatLeadNowhereAreTold) {
    sql("create table OAK (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(50)); insert into OAK values "
        "('1', 'OAK', 'RED');"
        "create table OLDKEY (PT_ID LONG, SPECIES TEXT(50)); insert into OLDKEY values (1, 'OLD');"
        "create table NOKEY (SPECIES TEXT(50)); insert into NOKEY values ('NONE')");
    const std::string gone = "\"" + path("gone.mdb") + "\"";
    lisp(
        "(setq at '(0.0 0.0 0.0) id '((\"PT#\" . \"9\")))"
        "(point at id (linked-by (list tmpl$ outp$ \"OAK\" \"pt_id \" \"1\" \"sixth\")))"  // good
        "(point at id (linked-by (list tmpl$ " +
        gone +
        " \"OAK\" \"PT_ID\" \"1\")))"                                            // no database
        "(point at id (linked-by (list tmpl$ outp$ \"OAK\" \"LOT_NO\" \"1\")))"  // by another field
        "(point at id (linked-by (list tmpl$ outp$ \"OAK\" \"PT_ID\")))"         // broken off
        "(point at id (linked-by (list tmpl$ outp$ \"\" \"PT_ID\" \"1\")))"      // no feature
        "(point at id (linked \"PINE\" \"2\"))"                                  // no table
        "(point at id (linked \"OLDKEY\" \"1\")) (point at id (linked \"NOKEY\" \"3\"))"
        "(point at id nil)"
        "(point at id '((-3 (\"ACAD\" (1000 . \"a\") (1000 . \"b\") (1000 . \"OAK\") (1000 . \"PT_ID\") "
        "(1000 . \"1\")))))");
    exported("INSERT", 1);
    EXPECT_EQ(records("set"), (Lines{"1|OAK|RED", "9|UNKNOWN|", "9|UNKNOWN|", "9|UNKNOWN|", "9|UNKNOWN|",
                                     "2||", "1||", "3||", "9|UNKNOWN|", "9|UNKNOWN|"}));
    EXPECT_TRUE(ui_.log().empty());
    // What an engine refuses is shown, and the shapes go out all the same.
    write("broken.mdb", "this is no database");
    lisp("(point at id (linked-by (list tmpl$ " + quoted("broken.mdb") + " \"OAK\" \"PT_ID\" \"5\")))");
    EXPECT_TRUE(exported("INSERT", 1).starts_with("1\n11 points"));
    EXPECT_TRUE(shown("\"Error\"") || shown("Error"));
    EXPECT_EQ(records("set").back(), "5||");
}

TEST_F(Export, ATemplateThatCannotBeReadIsToldOnce) {
    sql("create table OAK (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into OAK values ('1', 'OAK')");
    write("template.mdb", "this is no database");
    lisp(
        "(foreach feature '(\"PINE\" \"FIR\" \"OAK\" \"ELM\")"
        " (point '(0.0 0.0 0.0) nil (linked feature \"1\")))");
    exported("INSERT", 1);
    const auto boxes = std::count_if(ui_.log().begin(), ui_.log().end(), [](const std::string& line) {
        return line.find("Error") != std::string::npos;
    });
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(records("set"), (Lines{"1|", "1|", "1|OAK", "1|"}));
}

TEST_F(Export, WithoutAnEngineAttributesAreBlank) {
    sql("create table OAK (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(50)); insert into OAK values "
        "('1', 'OAK', 'RED')");
    lisp("(point '(0.0 0.0 0.0) nil (linked \"OAK\" \"1\"))");
    write("registry.ini", "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n");
    EXPECT_EQ(exported("INSERT", 1),
              "1\nPlease install DAO 3.6...\n1 point written to set.shp; 1 without a record\n");
    EXPECT_EQ(records("set"), (Lines{"1||||"}));
}

TEST_F(Export, OutputsOfEachKindGiveTheSame) {
    const std::string make =
        "create table [PIPE:8IN] (PT_ID TEXT, GIS_KEY TEXT, SIZE DOUBLE, AGE INTEGER, NOTE TEXT);"
        "insert into [PIPE:8IN] values ('P1', 'PIPE:8IN', 8.5, 12, 'x'), ('P2', 'PIPE:8IN', 6, 7, "
        "'O''Brien')";
    for (const char* file : {"pipes.sqlite", "pipes.gpkg"}) {
        useOutput(file);
        lisp("(command \"_.ERASE\" \"ALL\" \"\")");
        EXPECT_EQ(::answer(output_, make), "") << file;
        lisp(
            "(line '(0.0 0.0 0.0) '(1.0 0.0 0.0) (linked \"PIPE:8IN\" \"P1\"))"
            "(line '(0.0 0.0 0.0) '(2.0 0.0 0.0) (linked \"PIPE:8IN\" \"P2\"))");
        EXPECT_EQ(chosen({check("Export All"), click("OK")}), "\n2 lines written to set.shp\n") << file;
        EXPECT_EQ(records("set"), (Lines{"P1|PIPE:8IN|8.5|12|x", "P2|PIPE:8IN|6|7|O'Brien"})) << file;
    }
}

TEST_F(Export, ColumnsHoldTheirValues) {
    std::string longText(300, 'm');
    sql("create table F (PT_ID TEXT(255), GIS_KEY TEXT(255), PHONE DOUBLE, PARCEL LONG, POSTAL TEXT(10), "
        "PRICE DOUBLE, "
        "DESCRIPTION_A TEXT(50), DESCRIPTION_B TEXT(50), DESCRIPTIO TEXT(50), EMPTY TEXT(50), REMARK MEMO, "
        "GRÖSSE TEXT(80));"
        "insert into F values ('1', 'F', 5551234567, 123456789, '00123', 1234567890.5, 'a', 'b', 'c', '', '" +
        longText +
        "', 'größer €');"
        "insert into F values ('2', 'F', 1, 1, '27601', 2, 'a', 'b', 'c', NULL, 'short', '" +
        std::string(60, 'x') + "')");
    lisp("(polyline t 0.0 '((0.0 0.0) (4.0 0.0) (4.0 3.0)) (linked \"F\" \"1\"))");
    EXPECT_EQ(exported("LWPOLYLINE", 5), "1\n1 polygon written to set.shp; 1 text cut to 254 characters\n");
    EXPECT_EQ(fieldsOf("set"), (std::map<std::string, std::string>{{"PT_ID", "C 32"},
                                                                   {"GIS_KEY", "C 50"},
                                                                   {"PHONE", "C 50"},
                                                                   {"PARCEL", "N 9"},
                                                                   {"POSTAL", "C 50"},
                                                                   {"PRICE", "N 15.4"},
                                                                   {"DESCRIPTI1", "C 50"},
                                                                   {"DESCRIPTI2", "C 50"},
                                                                   {"DESCRIPTIO", "C 50"},
                                                                   {"EMPTY", "C 50"},
                                                                   {"REMARK", "C 254"},
                                                                   {"GRÖSSE", "C 60"}}));
    EXPECT_EQ(records("set"), (Lines{"1|F|5551234567|123456789|00123|1234567890.5|a|b|c||" +
                                     longText.substr(0, 254) + "|größer €"}));
    EXPECT_EQ(read("set.cpg"), "1252");
}

// --- The dialog ----------------------------------------------------------------------------------------

TEST_F(Export, TheDialogListsFeaturesAndCountsEntities) {
    lisp(
        "(point '(0.0 0.0 0.0) nil (linked \"oak\" \"1\")) (point '(0.0 0.0 0.0) nil (linked \"OAK\" \"2\"))"
        "(point '(0.0 0.0 0.0) nil nil) (line '(0.0 0.0 0.0) '(1.0 0.0 0.0) (linked \"OAK\" \"3\"))"
        "(polyline nil 0.0 '((0.0 0.0) (1.0 0.0) (1.0 1.0) (1e-8 0.0)) nil)"  // its ends are as good as one
        "(polyline nil 0.0 '((0.0 0.0) (1.0 0.0) (1.0 1.0) (2e-7 0.0)) nil) (polyline nil 0.0 '((3.0 3.0)) "
        "nil)"
        "(old-polyline 17 '((0.0 0.0 0.0 64) (1.0 0.0 0.0 64) (1.0 1.0 0.0 64) (0.0 1.0 0.0 64)) nil)"
        "(entmake '((0 . \"CIRCLE\") (10 0.0 0.0 0.0) (40 . 1.0)))"
        "(entmake '((0 . \"BLOCK\") (2 . \"TREE\") (70 . 0) (10 0.0 0.0 0.0))) (entmake '((0 . \"ENDBLK\")))"
        "(entmake '((0 . \"INSERT\") (2 . \"TREE\") (10 0.0 0.0 0.0)))");
    EXPECT_EQ(chosen({show(), check("Export All"), click("Cancel")}), "");
    const std::string model = ui_.log()[1];
    for (const char* line :
         {"[147] Export Norvane Software Entities to SHP File", "* 1004 check [ ] \"Export All\"",
          "label \"Norvane Software Points:\"\n  1001 list\n      OAK\n      UNKNOWN\n  1104 label "
          "\"Norvane Software Points: 3\"",
          "label \"Norvane Software Open Polylines:\"\n  1002 list\n      OAK\n      UNKNOWN\n  1105 label "
          "\"Norvane Software Open Polylines:2\"",
          "1003 list\n      UNKNOWN\n  1106 label \"Norvane Software Closed Polylines:2\"",
          "1005 check [ ] \"Include Z Coordinates\"", "1007 edit \"0.1\" (read-only)",
          "1902 edit \"\" (disabled)", "\"As last time\" (disabled)"})
        EXPECT_NE(model.find(line), std::string::npos) << line << "\n" << model;
    EXPECT_TRUE(shapeFiles().empty());
    // No row is selected: no file.
    EXPECT_EQ(chosen({click("OK")}), "\nNo feature was selected; nothing was written.\n");
    EXPECT_TRUE(shapeFiles().empty());
}

TEST_F(Export, ListsAreSelectedTogetherAndAlone) {
    lisp(
        "(point '(0.0 0.0 0.0) nil (linked \"A\" \"1\")) (point '(0.0 0.0 0.0) nil (linked \"B\" \"2\"))"
        "(line '(0.0 0.0 0.0) '(1.0 0.0 0.0) nil)");
    auto selected = [&](std::vector<ui::Step> steps) {
        steps.push_back(show());
        steps.push_back(click("Cancel"));
        ui_.clearLog();
        chosen(std::move(steps));
        std::string model, marks;
        for (const std::string& entry : ui_.log())
            if (entry.starts_with("[147]")) model = entry;
        for (const std::string& line : text::split(model, '\n'))
            if (line.starts_with("    > ")) marks += line.substr(6) + " ";
        return marks + (model.find("[x] \"Export All\"") == std::string::npos ? "" : "all");
    };
    EXPECT_EQ(selected({check("Export All")}), "A B UNKNOWN all");
    EXPECT_EQ(selected({check("Export All"), focus("1001")}), "A B UNKNOWN ");
    EXPECT_EQ(selected({check("Export All"), focus("1003")}), "A B UNKNOWN all");  // an empty list
    EXPECT_EQ(selected({check("Export All"), check("Export All", false)}), "");
    EXPECT_EQ(selected({pick("1001", "A"), also("1001", "B"), {ui::Step::Kind::DoubleClick, "1001", "B"}}),
              "");
    EXPECT_EQ(
        selected(
            {pick("1001", "B"), pick("1002", "UNKNOWN"), {ui::Step::Kind::DoubleClick, "1002", "UNKNOWN"}}),
        "B ");
}

TEST_F(Export, OneFeatureTakesTheNameAndSeveralGetTheirOwn) {
    lisp(
        "(point '(0.0 0.0 1.0) nil (linked \"A.B\" \"1\")) (point '(0.0 0.0 1.0) nil (linked \"A:B\" \"2\"))"
        "(point '(0.0 0.0 1.0) nil (linked \"A_B\" \"3\")) (line '(0.0 0.0 0.0) '(1.0 0.0 0.0) (linked "
        "\"A.B\" \"4\"))"
        "(polyline t 0.0 '((0.0 0.0) (4.0 0.0) (4.0 3.0)) (linked \"..\\\\x/y\" \"5\"))");
    fs::create_directory(path("v1.2"));
    EXPECT_EQ(chosen({pick("1001", "A:B"), click("OK")}, "v1.2/job.first.shp"),
              "\n1 point written to job.shp; 1 without a record\n");
    EXPECT_EQ(dump("v1.2/job").front(), "1 1");
    EXPECT_EQ(chosen({check("Export All"), check("Include Z Coordinates"), click("OK")}, "set.old.shp"),
              "\n1 point written to set_11_A_B.shp; 1 without a record"
              "\n1 point written to set_11_A_B_2.shp; 1 without a record"
              "\n1 point written to set_11_A_B_3.shp; 1 without a record"
              "\n1 line written to set_13_A_B.shp; 1 without a record"
              "\n1 polygon written to set_15____X_Y.shp; 1 without a record"
              "\n5 sets written: 5 entities; 5 without a record\n");
    EXPECT_EQ(shapeFiles(), (Lines{"set_11_A_B.shp", "set_11_A_B_2.shp", "set_11_A_B_3.shp", "set_13_A_B.shp",
                                   "set_15____X_Y.shp"}));
    EXPECT_EQ(records("set_11_A_B_2"), (Lines{"2|||||"}));
}

TEST_F(Export, LinkedEntitiesOfOtherKindsAreToldOf) {
    lisp(
        "(point '(0.0 0.0 1.0) nil (linked \"TREE\" \"1\"))"
        "(entmake '((0 . \"CIRCLE\") (10 0.0 0.0 0.0) (40 . 2.0)))"
        "(entmake (append '((0 . \"CIRCLE\") (10 5.0 0.0 0.0) (40 . 2.0)) (linked \"TREE\" \"2\")))");
    EXPECT_EQ(chosen({check("Export All"), click("OK")}),
              "\n1 point written to set.shp; 1 without a record\n1 linked entity left out: no survey points, "
              "lines or "
              "polylines. GIS-EXPORTSET takes blocks as points.\n");
}

TEST_F(Export, ExtraFieldsComeFromTheDrawing) {
    sql("create table OAK (PT_ID TEXT(255), GIS_KEY TEXT(255), DESCRIPTION TEXT(50), NORTHING DOUBLE, "
        "AREA_DWG DOUBLE);"
        "insert into OAK values ('1', 'OAK', 'of the record', 99, 98)");
    lisp(
        "(point '(1640211.37 480113.91 512.75) '((\"PT#\" . \"7\") (\"desc2\" . \"of the block\")) (linked "
        "\"OAK\" \"1\"))"
        "(polyline nil 0.0 '((0.0 0.0) (3.0 4.0) (3.0 10.0)) (linked \"OAK\" \"1\"))"
        "(old-polyline 8 '((0.0 0.0 0.0) (3.0 4.0 12.0)) (linked \"OAK\" \"1\"))"
        "(polyline t 0.0 '((1640000.0 480000.0) (1640003.0 480000.0) (1640003.0 480004.0)) (linked \"OAK\" "
        "\"1\"))");
    const auto all = [&](const char* z) {
        std::vector<ui::Step> steps = {check("Export All"), check("1006"), click("OK")};
        if (*z) steps.insert(steps.begin(), check(z));
        return chosen(steps);
    };
    all("");
    EXPECT_EQ(records("set_1_OAK"), (Lines{"1|OAK|480113.91|1640211.37|of the block|98"}));
    EXPECT_EQ(records("set_3_OAK"), (Lines{"1|OAK|11|of the record|99|98", "1|OAK|5|of the record|99|98"}));
    EXPECT_EQ(records("set_5_OAK"), (Lines{"1|OAK|6|of the record|99"}));
    all("Include Z Coordinates");
    EXPECT_EQ(records("set_11_OAK"), (Lines{"1|OAK|480113.91|1640211.37|512.75|of the block|98"}));
    EXPECT_EQ(records("set_13_OAK"), (Lines{"1|OAK|11|of the record|99|98", "1|OAK|13|of the record|99|98"}));
}

TEST_F(Export, ArcsAreChordsWithinTheOldCutoffOrADeviation) {
    lisp("(polyline nil 0.0 '((-10.0 0.0 1.0) (10.0 0.0)) nil)");
    auto vertices = [&](std::vector<ui::Step> steps) {
        steps.insert(steps.begin(), check("Export All"));
        steps.push_back(click("OK"));
        chosen(std::move(steps));
        return text::split(text::split(dump("set")[1], '|')[1], ' ').size() - 2;
    };
    EXPECT_EQ(vertices({}), 10u);
    // A chord of 1/n of the half circle is 10 (1 - cos(90 / n)) from its arc.
    EXPECT_EQ(vertices({check("Use another deviation"), type("1902", "0.1")}), 13u);
    EXPECT_EQ(vertices({check("Use another deviation"), type("1902", "0.001")}), 113u);
    ui_.clearLog();
    for (const char* none : {"0", "-1", "much", ""})
        chosen({check("Export All"), check("Use another deviation"), type("1902", none), click("OK"),
                click("Cancel")});
    EXPECT_TRUE(shown("The deviation must be a number of drawing units above 0."));
}

TEST_F(Export, ClosedPolylinesInsideOthersBecomeTheirHoles) {
    sql("create table LOT (PT_ID TEXT(255), GIS_KEY TEXT(255), OWNER TEXT(50)); insert into LOT values ('1', "
        "'LOT', 'ME')");
    lisp(
        "(defun square (x y size) (list (list x y) (list (+ x size) y) (list (+ x size) (+ y size)) (list x "
        "(+ y size))))"
        "(polyline t 0.0 (square 4.0 4.0 2.0) (linked \"LOT\" \"3\"))"  // an island in the hole
        "(polyline t 0.0 (square 2.0 2.0 6.0) (linked \"LOT\" \"2\"))"  // the hole
        "(polyline t 0.0 (square 0.0 0.0 10.0) (linked \"LOT\" \"1\"))"
        "(polyline t 0.0 (square 10.0 0.0 5.0) (linked \"LOT\" \"4\"))");  // beside it
    EXPECT_EQ(chosen({check("Export All"), click("OK")}),
              "\n4 polygons written to set.shp; 3 without a record\n");
    EXPECT_EQ(chosen({check("Export All"), check("1006"),
                      check("Closed polylines inside others become their holes"), click("OK")}),
              "\n3 polygons written to set.shp; 1 entity is a hole of others; 2 without a record\n");
    EXPECT_EQ(dump("set")[2],
              "1 [0, 5] [] 0 0 10 10 0 2 8 8 2 2 | 0 10 10 0 0 2 2 8 8 2 | 0 0 0 0 0 0 0 0 0 0 | 0 0 0 0 0 0 "
              "0 0 0 0");
    EXPECT_EQ(records("set"), (Lines{"3||4|", "1|LOT|64|ME", "4||25|"}));
}

TEST_F(Export, PointsWithoutAHeightCanHaveNone) {
    lisp(
        "(point '(0.0 0.0 512.5) nil nil) (point '(0.0 0.0 0.0) '((\"ELEV2\" . \"\")) nil)"
        "(point '(0.0 0.0 0.0) '((\"ELEV2\" . \"0.00\")) nil)");
    std::vector<ui::Step> steps = {check("Export All"), check("Include Z Coordinates"), check("1006"),
                                   click("OK")};
    chosen(steps);
    EXPECT_EQ(records("set"), (Lines{"|UNKNOWN|0|0|512.5|", "|UNKNOWN|0|0|0|", "|UNKNOWN|0|0|0|"}));
    steps.insert(steps.begin(), check("Points without a height have none instead of 0"));
    chosen(steps);
    EXPECT_EQ(records("set"), (Lines{"|UNKNOWN|0|0|512.5|", "|UNKNOWN|0|0||", "|UNKNOWN|0|0|0|"}));
    const Lines shapes = dump("set");
    EXPECT_EQ(shapes[1], "0 [] [] 0 | 0 | 512.5 | 0");
    EXPECT_EQ(shapes[2], "1 [] [] 0 | 0 | 0 | 0");  // what pyshp's words are for no value
    EXPECT_EQ(outputOf("/usr/bin/python3 -c 'import shapefile; r = shapefile.Reader(\"" + path("set") +
                       "\"); print(r.zbox, r.shape(1).z)'"),
              "[0.0, 512.5] [-1e+39]\n");
}

TEST_F(Export, TheReferenceOfTheDrawingGoesWithItsSets) {
    lisp("(point '(0.0 0.0 0.0) nil nil)");
    write("state.prj", "PROJCS[\"NC\"]");
    write("set.prj", "OLD");
    chosen({check("Export All"), click("OK")});
    EXPECT_FALSE(fs::exists(path("set.prj"))) << "it belonged to the old set";
    ui_.answerFile(path("state.prj"));
    chosen({check("Export All"), click("Browse..."), click("OK")});
    EXPECT_EQ(read("set.prj"), "PROJCS[\"NC\"]");
    // From now on by itself, without the dialog too.
    chosen({check("Export All"), click("OK")}, "again.shp");
    EXPECT_EQ(read("again.prj"), "PROJCS[\"NC\"]");
    exported("INSERT", 1, "direct");
    EXPECT_EQ(read("direct.prj"), "PROJCS[\"NC\"]");
    ui_.clearLog();
    chosen({check("Export All"), type("1906", path("gone.prj")), click("OK"), click("Cancel")}, "none.shp");
    EXPECT_TRUE(shown("gone.prj\" cannot be read."));
    EXPECT_FALSE(fs::exists(path("none.shp")));
}

TEST_F(Export, WhatWasChosenCanBeChosenAgain) {
    lisp(
        "(point '(0.0 0.0 0.0) nil (linked \"A\" \"1\")) (point '(0.0 0.0 0.0) nil (linked \"B\" \"2\"))"
        "(line '(0.0 0.0 0.0) '(1.0 0.0 0.0) (linked \"A\" \"3\"))");
    EXPECT_EQ(lisp("(gis:export-folder)"), "\"\"");
    chosen({pick("1001", "B"), pick("1002", "A"), check("Include Z Coordinates"),
            check("Use another deviation"), type("1902", "0.25"), click("OK")});
    EXPECT_EQ(lisp("(gis:export-folder)"), quoted(""));
    ui_.clearLog();
    chosen({show(), click("As last time"), show(), click("Cancel")});
    EXPECT_NE(ui_.log()[1].find("1005 check [ ] \"Include Z"), std::string::npos)
        << "nothing is chosen at first";
    std::string model;
    for (const std::string& entry : ui_.log())
        if (entry.starts_with("[147]")) model = entry;
    for (const char* part : {"      A\n    > B\n", "1002 list\n    > A\n", "1005 check [x] \"Include Z",
                             "1006 check [ ]", "1901 check [x]", "1902 edit \"0.25\"\n"})
        EXPECT_NE(model.find(part), std::string::npos) << part << "\n" << model;
}

TEST_F(Export, OnlySurveyPointsAndPolylinesAreOffered) {
    lisp("(entmake '((0 . \"CIRCLE\") (10 0.0 0.0 0.0) (40 . 1.0)))");
    inputs_ = {"ALL", ""};
    lisp("(cf:gis_smart_prompting 9 " + quoted("set.shp") + ")");
    EXPECT_NE(
        printed().find("\nCannot find any Norvane Software entities in this selection! Please try again"),
        std::string::npos);
    inputs_ = {""};
    lisp("(cf:gis_smart_prompting 9 " + quoted("set.shp") + ")");
    EXPECT_NE(printed().find("\nInvalid selection! Please try again!"), std::string::npos);
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 9)"), "0");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 9 \"\")"), "0");
    EXPECT_EQ(printed(), "");
    // Code 10 wants all three of its arguments, and a type that it knows.
    for (const char* rest : {"", " (all \"*\")", " (all \"*\") 8", " (all \"*\") 1.0", " 1 (all \"*\")"})
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 10 " + quoted("set") + rest + ")"), "0") << rest;
    EXPECT_TRUE(shapeFiles().empty());
}
