// The Lisp: what expressions print, and how they fail. The expected values are facts of the dialect, most of
// them from its manuals.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"
#include "platform/files/files.h"

namespace hostcad::lisp {
namespace {

class LispTest : public testing::Test {
  protected:
    // The printed value of the last expression, or "error: ..." with the message.
    std::string run(const std::string& text) {
        try {
            return toText(lisp_.runText(text, "test.lsp"));
        } catch (const Error& error) {
            report_ = error.fullText();
            return std::string("error: ") + error.what();
        }
    }

    struct Case {
        const char* expression;
        const char* printed;
    };
    void check(std::initializer_list<Case> cases) {
        for (const Case& c : cases) EXPECT_EQ(run(c.expression), c.printed) << c.expression;
    }

    std::string output_;
    std::string report_;
    Interpreter lisp_{[this](std::string_view text) { output_ += text; }};
};

TEST_F(LispTest, ReadsAndPrintsValues) {
    check({
        {"nil", "nil"},
        {"t", "T"},
        {"'abc", "ABC"},
        {"12", "12"},
        {"-2147483648", "-2147483648"},
        {"2147483648", "2.14748e+09"},
        {"+7", "7"},
        {"1.", "1.0"},
        {".5", "0.5"},
        {"-0.25", "-0.25"},
        {"1e5", "100000.0"},
        {"1e6", "1.0e+06"},
        {"123456.7", "123457.0"},
        {"0.00001", "1.0e-05"},
        {"\"a\\\"b\\\\c\\n\\t\"", "\"a\\\"b\\\\c\\n\\t\""},
        {"\"\\101\"", "\"A\""},
        {"'(1 2 . 3)", "(1 2 . 3)"},
        {"'(1 . (2 . (3 . nil)))", "(1 2 3)"},
        {"'(10 . 0.5)", "(10 . 0.5)"},
        {"''a", "(QUOTE A)"},
        {"'(a;comment\n b ;|over\nlines|; c)", "(A B C)"},
        {"'(a\"b\"c)", "(A \"b\" C)"},
        {"'(cf:gis_smart_prompting lspdir$ 1+ -)", "(CF:GIS_SMART_PROMPTING LSPDIR$ 1+ -)"},
        {"`TREE12`", "\"TREE12\""},
        {"()", "nil"},
        {"pi", "3.14159"},
    });
}

TEST_F(LispTest, RefusesMalformedText) {
    check({
        {"(1 2", "error: malformed list on input"},
        {"\"abc", "error: malformed string on input"},
        {"(+ 1 2))", "error: extra right paren on input"},
        {"'( . 1)", "error: misplaced dot on input"},
        {"'(1 . 2 3)", "error: misplaced dot on input"},
        {"'(1 . )", "error: misplaced dot on input"},
    });
    run("\n\n(princ 1)\n(car");
    EXPECT_NE(report_.find("test.lsp:4"), std::string::npos) << report_;
}

TEST_F(LispTest, TakesListsApart) {
    check({
        {"(car '(a b c))", "A"},
        {"(cdr '(a b c))", "(B C)"},
        {"(cdr '(a . b))", "B"},
        {"(car nil)", "nil"},
        {"(cadr '(a b c))", "B"},
        {"(caddr '(a b c))", "C"},
        {"(caar '((a x) b c))", "A"},
        {"(cdar '((a x) b c))", "(X)"},
        {"(cadar '((a x) b c))", "X"},
        {"(cadddr '(1 2 3 4 5))", "4"},
        {"(cddddr '(1 2 3 4 5))", "(5)"},
        {"(cons 'a '(b c))", "(A B C)"},
        {"(cons 'a 2)", "(A . 2)"},
        {"(cons '(a) '(b c))", "((A) B C)"},
        {"(list 'a (+ 1 2) \"c\")", "(A 3 \"c\")"},
        {"(append '(a b) '(c d))", "(A B C D)"},
        {"(append '((a)) nil '((b)))", "((A) (B))"},
        {"(reverse '((a) b c))", "(C B (A))"},
        {"(length '(a b (c d)))", "3"},
        {"(length nil)", "0"},
        {"(nth 3 '(a b c d e))", "D"},
        {"(nth 5 '(a b c d e))", "nil"},
        {"(last '(a b c (d e)))", "(D E)"},
        {"(member 'c '(a b c d e))", "(C D E)"},
        {"(member 'q '(a b c))", "nil"},
        {"(assoc 'size '((name box) (width 3) (size 4.7263) (depth 5)))", "(SIZE 4.7263)"},
        {"(subst 'qq 'b '(a b (c d) b))", "(A QQ (C D) QQ)"},
        {"(vl-list* 1 2 '(3 4))", "(1 2 3 4)"},
        {"(vl-remove 1 '(1 2 1 3))", "(2 3)"},
        {"(vl-position 'c '(a b c))", "2"},
        {"(vl-remove-if '(lambda (x) (> x 2)) '(1 2 3 4))", "(1 2)"},
        {"(vl-remove-if-not 'numberp '(a 1 b 2))", "(1 2)"},
        {"(vl-sort '(3 2 1 3) '<)", "(1 2 3)"},
        {"(vl-sort '(\"b\" \"a\" \"b\") '<)", "(\"a\" \"b\" \"b\")"},
        {"(vl-sort '((1 3) (2 2) (3 1)) '(lambda (a b) (< (cadr a) (cadr b))))", "((3 1) (2 2) (1 3))"},
        {"(vl-sort-i '(\"c\" \"a\" \"b\") '<)", "(1 2 0)"},
        {"(vl-some '(lambda (x) (if (> x 2) (* 10 x))) '(1 3 5))", "30"},
        {"(vl-every '< '(1 2) '(2 3))", "T"},
        {"(mapcar '+ '(1 2 3) '(10 20))", "(11 22)"},
        {"(mapcar '(lambda (x) (* x x)) '(1 2 3))", "(1 4 9)"},
        {"(apply '+ '(1 2 3))", "6"},
        {"(apply 'strcat '(\"a\" \"b\"))", "\"ab\""},
        {"(length '(1 . 2))", "error: bad list: (1 . 2)"},
        {"(car 5)", "error: bad argument type: listp 5"},
    });
}

TEST_F(LispTest, Calculates) {
    check({
        {"(+ 1 2 3)", "6"},
        {"(+ 1 2 3.0)", "6.0"},
        {"(+)", "0"},
        {"(- 50 40)", "10"},
        {"(- 8)", "-8"},
        {"(* 2 3 4.0)", "24.0"},
        {"(/ 100 2)", "50"},
        {"(/ 100 20 2)", "2"},
        {"(/ 135 360)", "0"},
        {"(/ 135 360.0)", "0.375"},
        {"(/ -7 2)", "-3"},
        {"(+ 2147483647 1)", "-2147483648"},
        {"(* 65536 65536)", "0"},
        {"(- -2147483648)", "-2147483648"},
        {"(/ -2147483648 -1)", "-2147483648"},
        {"(1+ -17.5)", "-16.5"},
        {"(1- 5)", "4"},
        {"(rem 42 12)", "6"},
        {"(rem 12.0 16)", "12.0"},
        {"(rem 26 7 2)", "1"},
        {"(max 4.07 -144)", "4.07"},
        {"(min 73 2.0 48)", "2.0"},
        {"(max -88 19 5 2)", "19"},
        {"(abs -99.25)", "99.25"},
        {"(gcd 81 57)", "3"},
        {"(sqrt 4)", "2.0"},
        {"(expt 2 4)", "16"},
        {"(expt 3.0 2)", "9.0"},
        {"(fix 3.7)", "3"},
        {"(fix -3.7)", "-3"},
        {"(fix 1e10)", "1.0e+10"},
        {"(float 3)", "3.0"},
        {"(atan 1)", "0.785398"},
        {"(atan -2.0 3.0)", "-0.588003"},
        {"(exp 2.2)", "9.02501"},
        {"(log 4.5)", "1.50408"},
        {"(logand 7 15 3)", "3"},
        {"(logior 1 2 4)", "7"},
        {"(lsh 2 1)", "4"},
        {"(lsh 40 -2)", "10"},
        {"(lsh 1 31)", "-2147483648"},
        {"(~ 3)", "-4"},
        {"(boole 6 12 5)", "9"},
        {"(boole 4 3 14)", "12"},
        {"(/ 1 0)", "error: divide by zero"},
        {"(/ 1 0.0)", "error: divide by zero"},
        {"(rem 1 0)", "error: divide by zero"},
        {"(+ 1 nil)", "error: bad argument type: numberp: nil"},
        {"(sqrt -4)", "error: function undefined for argument: -4"},
    });
}

TEST_F(LispTest, Compares) {
    check({
        {"(= 4 4.0)", "T"},
        {"(= 20 388)", "nil"},
        {"(= 2.4 2.4 2.4)", "T"},
        {"(= \"me\" \"me\")", "T"},
        {"(= nil 5)", "nil"},
        {"(/= 10 20)", "T"},
        {"(/= 1 1)", "nil"},
        {"(< 2 3 88)", "T"},
        {"(< 2 3 4 4)", "nil"},
        {"(<= 2 9 9)", "T"},
        {"(> \"c\" \"b\")", "T"},
        {"(>= 77 4 9)", "nil"},
        {"(< nil 5)", "error: bad argument type for compare: nil 5"},
        {"(eq '(a) '(a))", "nil"},
        {"(progn (setq x '(a)) (eq x x))", "T"},
        {"(eq 3 3)", "T"},
        {"(equal '(a b) '(a b))", "T"},
        {"(equal 1 1.0)", "T"},
        {"(equal 1.123456 1.123457)", "nil"},
        {"(equal 1.123456 1.123457 0.000001)", "T"},
        {"(equal '(1.0 2.0) '(1.001 2.001) 0.01)", "T"},
        {"(and 1 2)", "T"},
        {"(and)", "T"},
        {"(and 1 nil)", "nil"},
        {"(or nil 45)", "T"},
        {"(or)", "nil"},
        {"(not 0)", "nil"},
        {"(atom nil)", "T"},
        {"(listp nil)", "T"},
        {"(numberp 'a)", "nil"},
        {"(minusp -4.293)", "T"},
        {"(zerop 0.0)", "T"},
        {"(boundp 'nobody-set-this)", "nil"},
        {"(mapcar 'type (list 1 1.0 \"a\" 'a '(1) car (lambda (x) x)))",
         "(INT REAL STR SYM LIST SUBR USUBR)"},
        {"(type nil)", "nil"},
    });
}

TEST_F(LispTest, HandlesStrings) {
    check({
        {"(strcat \"a\" \"bout\")", "\"about\""},
        {"(strcat)", "\"\""},
        {"(strlen \"one\" \"two\" \"four\")", "10"},
        {"(strlen \"caf\xC3\xA9\")", "4"},
        {"(substr \"abcde\" 2)", "\"bcde\""},
        {"(substr \"abcde\" 2 1)", "\"b\""},
        {"(substr \"abc\" 9)", "\"\""},
        {"(substr \"caf\xC3\xA9s\" 4 1)", "\"\xC3\xA9\""},
        {"(strcase \"Sample\")", "\"SAMPLE\""},
        {"(strcase \"Sample\" t)", "\"sample\""},
        {"(ascii \"A\")", "65"},
        {"(ascii \"\xC3\xA9\")", "233"},
        {"(chr 233)", "\"\xC3\xA9\""},
        {"(ascii (chr 128))", "128"},
        {"(chr 65)", "\"A\""},
        {"(itoa -17)", "\"-17\""},
        {"(atoi \"97\")", "97"},
        {"(atoi \"3.9\")", "3"},
        {"(atoi \"x\")", "0"},
        {"(atof \"97.1\")", "97.1"},
        {"(atof \"3ft\")", "3.0"},
        {"(read \"(a b) c\")", "(A B)"},
        {"(read \"\")", "nil"},
        {"(wcmatch \"Name\" \"N*\")", "T"},
        {"(wcmatch \"Name\" \"???,*m*\")", "T"},
        {"(wcmatch \"Name\" \"~*m*\")", "nil"},
        {"(wcmatch \"B2\" \"[A-C][~3-9]\")", "T"},
        {"(wcmatch \"D2\" \"[A-C]*\")", "nil"},
        {"(wcmatch \"B5\" \"?[~3-9]\")", "nil"},
        {"(vl-string-search \"foo\" \"pfooyey on you\")", "1"},
        {"(vl-string-search \"z\" \"abc\")", "nil"},
        {"(vl-string-subst \"Obi-wan\" \"Ben\" \"Ben Kenobi Ben\")", "\"Obi-wan Kenobi Ben\""},
        {"(vl-string-trim \" \\t\\n\" \" \\t STR \\n\")", "\"STR\""},
        {"(vl-string-left-trim \"12\" \"2134\")", "\"34\""},
        {"(vl-string-right-trim \"0123456789\" \"TREE12\")", "\"TREE\""},
        {"(vl-string->list \"123\")", "(49 50 51)"},
        {"(vl-list->string '(49 50))", "\"12\""},
        {"(vl-string-position (ascii \"b\") \"abcb\")", "1"},
        {"(vl-string-position (ascii \"b\") \"abcb\" nil t)", "3"},
        {"(vl-string-translate \"abc\" \"123\" \"a cab\")", "\"1 312\""},
        {"(vl-string-elt \"May\" 0)", "77"},
        {"(vl-princ-to-string '(\"a\" b))", "\"(a B)\""},
        {"(vl-prin1-to-string \"abc\")", "\"\\\"abc\\\"\""},
        {"(vl-filename-base \"/drawings/survey.old.dxf\")", "\"survey.old\""},
        {"(vl-filename-directory \"/drawings/survey.dxf\")", "\"/drawings\""},
        {"(vl-filename-extension \"survey.dxf\")", "\".dxf\""},
        {"(vl-filename-extension \"survey\")", "nil"},
        {"(strcat \"a\" 1)", "error: bad argument type: stringp 1"},
    });
}

TEST_F(LispTest, FormatsUnits) {
    check({
        {"(rtos 17.5 1 4)", "\"1.7500E+01\""},
        {"(rtos 17.5 2 2)", "\"17.50\""},
        {"(rtos 17.5 3 2)", "\"1'-5.50\\\"\""},
        {"(rtos 17.5 4 2)", "\"1'-5 1/2\\\"\""},
        {"(rtos 17.5 5 2)", "\"17 1/2\""},
        {"(rtos 11.999 4 4)", "\"1'\""},
        {"(rtos 23.996 3 2)", "\"2'\""},
        {"(rtos -0.5 4 1)", "\"-1/2\\\"\""},
        {"(rtos 2.5)", "\"2.5000\""},
        {"(angtos 0.785398 0 4)", "\"45.0000\""},
        {"(angtos 0.785398 1 4)", "\"45d0'0\\\"\""},
        {"(angtos 0.785398 2 4)", "\"50.0000g\""},
        {"(angtos 0.785398 3 4)", "\"0.7854r\""},
        {"(angtos 0.785398 4 2)", "\"N 45d0' E\""},
        {"(angtos -0.785398 0 0)", "\"315\""},
        {"(distof \"1'-5 1/2\\\"\" 4)", "17.5"},
        {"(distof \"1.75E1\" 1)", "17.5"},
        {"(distof \"-2.5\" 2)", "-2.5"},
        {"(distof \"abc\")", "nil"},
        {"(distof \"1'nan\" 4)", "nil"},
        {"(distof \"1'inf\" 4)", "nil"},
        {"(distof \"3/inf\" 5)", "nil"},
        {"(angtof \"n nand e\" 4)", "nil"},
        {"(angtof \"ninfe\" 4)", "nil"},
        {"(rtos (* 180 (/ (angtof \"45d30'\" 1) pi)) 2 4)", "\"45.5000\""},
        {"(rtos (* 180 (/ (angtof \"S 45d W\" 4) pi)) 2 4)", "\"225.0000\""},
    });
}

TEST_F(LispTest, MeasuresGeometry) {
    check({
        {"(angle '(1.0 1.0) '(1.0 4.0))", "1.5708"},
        {"(angle '(5.0 1.33) '(2.4 1.33))", "3.14159"},
        {"(angle '(0 0) '(1 -1))", "5.49779"},
        {"(distance '(1.0 2.5 3.0) '(7.7 2.5 3.0))", "6.7"},
        {"(distance '(1.0 2.0 0.5) '(3.0 4.0 0.5))", "2.82843"},
        {"(distance '(0 0) '(3 4 100))", "5.0"},
        {"(polar '(1 1 3.5) 0.785398 1.414214)", "(2.0 2.0 3.5)"},
        {"(polar '(0 0) 0 2)", "(2.0 0.0)"},
        {"(inters '(1.0 1.0) '(9.0 9.0) '(4.0 1.0) '(4.0 2.0))", "nil"},
        {"(inters '(1.0 1.0) '(9.0 9.0) '(4.0 1.0) '(4.0 2.0) nil)", "(4.0 4.0)"},
        {"(inters '(0 0) '(1 1) '(0 1) '(1 2) nil)", "nil"},
        {"(distance 5 '(0 0))", "error: bad argument type: 2D/3D point: 5"},
    });
}

TEST_F(LispTest, RunsPrograms) {
    check({
        {"(defun sq (x) (* x x))", "SQ"},
        {"(sq 5)", "25"},
        {"(defun fact (n) (if (< n 2) 1 (* n (fact (1- n))))) (fact 10)", "3628800"},
        {"(setq x 5 y 6)", "6"},
        {"(setq)", "nil"},
        {"(defun f (x / y) (setq y 7) (list x y)) (list (f 1) x y)", "((1 7) 5 6)"},
        {"(cond ((= 1 2) 'a) (nil) ((+ 1 1)) (t 'b))", "2"},
        {"(cond (nil 1))", "nil"},
        {"(setq i 0) (while (< i 5) (setq i (1+ i)))", "5"},
        {"(setq n 0) (repeat 4 (setq n (+ n 10)))", "40"},
        {"(repeat -1 (setq n 1))", "nil"},
        {"(setq s nil) (foreach v '(a b c) (setq s (cons v s)))", "(C B A)"},
        {"(progn 1 2 3)", "3"},
        {"(eval '(+ 1 2))", "3"},
        {"(set 'q 9) q", "9"},
        {"((lambda (x / y) (setq y x) (+ y 1)) 4)", "5"},
        {"(setq old '((x) (* 2 x))) (old 4)", "8"},
        {"(setq name 'sq) (apply name '(3))", "9"},
        {"(mapcar (function (lambda (x) (1+ x))) '(1 2))", "(2 3)"},
        {"(read \"1 . 2\")", "1"},
        // Dynamic scope: a called function sees the caller's locals.
        {"(defun inner () hidden) (defun outer (/ hidden) (setq hidden 'seen) (inner)) (outer)", "SEEN"},
        {"hidden", "nil"},
        // A function may be redefined while it runs.
        {"(defun me () (defun me () 'new) 'old) (list (me) (me))", "(OLD NEW)"},
        {"(nobody 1)", "error: no function definition: NOBODY"},
        {"(\"text\" 1)", "error: bad function: \"text\""},
        {"(t 1)", "error: bad function: T"},
        {"(setq one 'two two 'one) (vl-catch-all-error-p (vl-catch-all-apply 'one nil))", "T"},
        {"(sq)", "error: too few arguments"},
        {"(sq 1 2)", "error: too many arguments"},
        {"(car)", "error: too few arguments"},
        {"(if)", "error: too few arguments"},
        {"(setq t 5)", "error: assignment to protected symbol: T"},
        {"(setq x)", "error: too few arguments"},
        {"(quit)", "error: quit / exit abort"},
    });
}

TEST_F(LispTest, PrintsToTheCommandLine) {
    run("(princ \"a\\\"b\") (prin1 \"a\\\"b\") (print 'x) (terpri) (prompt \"p\") (princ)");
    EXPECT_EQ(output_, "a\"b\"a\\\"b\"\nX \np");
}

TEST_F(LispTest, TellsWhereAnErrorArose) {
    EXPECT_EQ(run("(defun inner (x)\n  (+ x\n     nil))\n(defun outer ()\n  (inner 1))\n(outer)"),
              "error: bad argument type: numberp: nil");
    EXPECT_EQ(report_,
              "bad argument type: numberp: nil\n"
              "  at test.lsp:2 in (+ X nil)\n"
              "  in INNER, called at test.lsp:5\n"
              "  in OUTER, called at test.lsp:6");
}

TEST_F(LispTest, CallsTheErrorHandlerWithTheLocalsOfTheFailedCall) {
    run("(setq kept 'global)"
        "(defun work (/ *error* kept)"
        "  (defun *error* (msg) (setq seen (list msg kept)))"
        "  (setq kept 'local)"
        "  (car 5))"
        "(work)");
    EXPECT_EQ(run("(list seen kept *error*)"), "((\"bad argument type: listp 5\" LOCAL) GLOBAL nil)");
}

TEST_F(LispTest, CatchesErrors) {
    check({
        {"(setq r (vl-catch-all-apply '/ '(5 0))) (vl-catch-all-error-p r)", "T"},
        {"(vl-catch-all-error-message r)", "\"divide by zero\""},
        {"(vl-catch-all-apply '/ '(6 2))", "3"},
        {"(vl-catch-all-error-p 5)", "nil"},
        {"(defun *error* (m) (setq called t)) (vl-catch-all-apply 'car '(5)) called", "nil"},
        {"(vl-catch-all-error-message (vl-catch-all-apply 'exit nil))", "\"quit / exit abort\""},
    });
}

TEST_F(LispTest, EndsEndlessRecursionWithAnError) {
    check({
        {"(defun down (n) (1+ (down (1+ n)))) (down 0)", "error: stack limit reached"},
        {"(+ 1 1)", "2"},
        // The handler has room to run.
        {"(defun *error* (m) (setq told (strcat \"told: \" m)) (mapcar '1+ '(1 2))) (down 0)",
         "error: stack limit reached"},
        {"told", "\"told: stack limit reached\""},
        {"(setq f '(lambda (g) (g g))) (f f)", "error: stack limit reached"},
        {"(defun fine (n) (if (= n 0) 0 (1+ (fine (1- n))))) (fine 1000)", "1000"},
    });
}

TEST_F(LispTest, BearsDeepNesting) {
    std::string deep(200000, '(');
    EXPECT_EQ(run("'" + deep), "error: malformed list on input");
    check({
        {"(setq n nil) (repeat 300000 (setq n (list n))) (length n)", "1"},
        {"(setq m nil) (repeat 300000 (setq m (list m))) (equal n m)", "T"},
        {"(strlen (vl-princ-to-string n))", "600003"},
        {"(setq n nil m nil)", "nil"},
        {"(setq long nil) (repeat 300000 (setq long (cons 1 long))) (apply '+ long)", "300000"},
        {"(setq long nil)", "nil"},
    });
}

TEST_F(LispTest, NeedsNoMoreMemoryTheLongerALoopRuns) {
    size_t before = Heap::used;
    run("(setq i 0) (repeat 100000 (setq i (1+ i) l (list i (itoa i) (cons i 'x))))");
    EXPECT_LT(Heap::used, before + 10000);
}

TEST_F(LispTest, EndsWhenMemoryOrStepsRunOut) {
    size_t limit = Heap::limit;
    Heap::limit = Heap::used + (1 << 20);
    EXPECT_EQ(run("(setq l nil) (while t (setq l (cons 1 l)))"), "error: insufficient memory");
    run("(setq l nil)");
    EXPECT_EQ(run("(setq s \"ab\") (while t (setq s (strcat s s)))"), "error: insufficient memory");
    EXPECT_EQ(run("(setq x '(1)) (repeat 60 (setq x (cons x x))) (princ x)"), "error: insufficient memory");
    Heap::limit = limit;
    lisp_.limitSteps(1000);
    EXPECT_EQ(run("(vl-catch-all-apply '(lambda () (while t)) nil)"), "error: too many steps");
    lisp_.limitSteps(0);
    lisp_.cancel();
    EXPECT_EQ(run("(while t)"), "error: Function cancelled");
}

class LispFilesTest : public LispTest {
  protected:
    void SetUp() override {
        folder_ = testing::TempDir() + "lisp_files_" + std::to_string(getpid()) + "/";
        run("(vl-mkdir \"" + folder_ + "\")");
        run("(setq path \"" + folder_ + "a.txt\")");
    }
    std::string folder_;
};

TEST_F(LispFilesTest, ReadAndWriteLines) {
    check({
        {"(open \"/nowhere/at/all\" \"r\")", "nil"},
        {"(setq f (open path \"w\")) (write-line \"one\" f) (princ '(2 \"x\") f) (write-char 10 f) (close f)",
         "nil"},
        {"(setq f (open path \"a\")) (prin1 \"q\" f) (close f)", "nil"},
        {"(setq f (open path \"r\")) (setq l (list (read-line f) (read-line f) (read-line f) (read-line f))) "
         "(close f) l",
         "(\"one\" \"(2 x)\" \"\\\"q\\\"\" nil)"},
        {"(setq f (open path \"r\")) (setq l (list (read-char f) (read-char f))) (close f) l", "(111 110)"},
        {"(read-line f)", ("error: file not open: " + folder_ + "a.txt").c_str()},
        {"(vl-file-size path)", "13"},
        {"(vl-file-copy path (strcat path \"2\"))", "13"},
        {"(vl-file-copy path (strcat path \"2\"))", "nil"},
        {"(vl-file-rename (strcat path \"2\") (strcat path \"3\"))", "T"},
        {"(vl-file-delete (strcat path \"3\"))", "T"},
        {"(vl-file-delete (strcat path \"3\"))", "nil"},
        {"(vl-file-directory-p (vl-filename-directory path))", "T"},
        {"(vl-directory-files (vl-filename-directory path) \"*.TXT\" 1)", "(\"a.txt\")"},
        {"(open path \"rw\")", "error: bad argument value: open mode: rw"},
    });
}

TEST_F(LispFilesTest, TakeOldCodePagesAndLineEnds) {
    std::ofstream(folder_ + "a.txt", std::ios::binary) << "caf\xE9\r\nnext\r\n";
    check({
        {"(setq f (open path \"r\")) (setq l (list (read-line f) (read-line f) (read-line f))) (close f) l",
         "(\"caf\xC3\xA9\" \"next\" nil)"},
        {"(setq f (open path \"r\")) (setq n nil) (while (setq c (read-char f)) (setq n (cons c n))) (close "
         "f) (reverse n)",
         "(99 97 102 233 10 110 101 120 116 10)"},
    });
}

TEST_F(LispFilesTest, ProgramsAreReadFromFiles) {
    std::ofstream(folder_ + "good.lsp") << "\xEF\xBB\xBF(defun from-file () 'yes)\r\n(from-file)\r\n";
    EXPECT_EQ(toText(lisp_.runFile(folder_ + "good.lsp")), "YES");
    std::ofstream(folder_ + "bad.lsp") << "(setq a 1)\n\n(setq b\n";
    try {
        lisp_.runFile(folder_ + "bad.lsp");
        FAIL();
    } catch (const Error& error) {
        EXPECT_NE(error.fullText().find("bad.lsp:4"), std::string::npos) << error.fullText();
    }
    EXPECT_THROW(lisp_.runFile(folder_ + "none.lsp"), Error);
}

}  // namespace
}  // namespace hostcad::lisp
