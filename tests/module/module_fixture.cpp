#include "tests/module/module_fixture.h"

#include "tests/platform/dao/scratch.h"

#include <cstdlib>

#include "hostcad/lisp/error.h"
#include "hostcad/lisp/printer.h"

void ModuleTest::SetUp() {
    std::string pattern = (fs::temp_directory_path() / "norvane-test-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    setenv("NORVANE_USER_DIR", folder_.c_str(), 1);
    setenv("NORVANE_REGISTRY", path("registry.ini").c_str(), 1);
    ui::setBackend(&ui_);
    hostcad::Output& output = *this;
    hostcad::InputSource& source = *this;
    host_ = std::make_unique<hostcad::Host>(output, source, view_);
    host_->setFolders({NORVANE_BIN_DIR, NORVANE_BIN_DIR "/support", folder_});
    ASSERT_TRUE(host_->modules().load(NORVANE_BIN_DIR "/norvane_gis.arx")) << output_;
}

void ModuleTest::TearDown() {
    host_.reset();
    ui::setBackend(nullptr);
    std::error_code error;
    fs::permissions(folder_, fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(folder_, error);
}

hostcad::Input ModuleTest::next(const hostcad::Prompt&) {
    if (inputs_.empty()) return hostcad::Input::end();
    const std::string input = inputs_.front();
    inputs_.erase(inputs_.begin());
    return hostcad::Input::ofText(input);
}

std::string ModuleTest::lisp(const std::string& text) {
    try {
        return hostcad::lisp::toText(host_->lisp().runText(text));
    } catch (const hostcad::lisp::Error& error) {
        return std::string("error: ") + error.what();
    }
}

std::string ModuleTest::printed() {
    return std::exchange(output_, {});
}

void ModuleTest::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string ModuleTest::read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string ModuleTest::sqlite(const std::string& file, const std::string& sql) const {
    return ::answer(path(file), sql);
}

void ModuleTest::makeTemplate() {
    answer(146, {click("Select Template MDB File"), click("Exit")});
    answer(149, {click("New Access 2000 Format")});
    ui_.answerFile(path("template.mdb"));
    lisp("(cf:gis_smart_prompting 7)");
    lisp("(load \"" NORVANE_SOURCE_DIR "/samples/features.lsp\")");
    ASSERT_EQ(lisp("(sample:fill-template " + quoted("template.mdb") + ")"), "1.0") << output_;
    ui_.clearLog();
}

void ModuleTest::makeEntity() {
    lisp("(setq ent (entmakex '((0 . \"TEXT\") (10 1.0 2.0 0.0) (40 . 2.5) (1 . \"label\"))))");
    ASSERT_NE(lisp("ent"), "nil");
}

std::string ModuleTest::prompt(const std::string& key, const std::string& feature, int locked) {
    return lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("template.mdb") + " " +
                quoted("output.mdb") + " \"PT_ID\" \"" + key + "\" 480100.25 1630200.5 512.75 ent \"" +
                feature + "\" " + std::to_string(locked) + " 0.0 0.0 0.0 0.0 0.0 0.0 \"\")");
}

std::string ModuleTest::link() {
    return lisp("(cdr (assoc -3 (entget ent '(\"ZGEO_GIS_2000\"))))");
}

std::vector<std::string> ModuleTest::boxFolders() const {
    std::vector<std::string> folders;
    for (const std::string& line : ui_.log()) {
        const size_t begin = line.find(" in \""), end = line.find("\" -> ");
        if (line.find(" file box \"") < begin && begin < end && end != std::string::npos)
            folders.push_back(line.substr(begin + 5, end - begin - 5));
    }
    return folders;
}

bool ModuleTest::shown(const std::string& part) const {
    for (const std::string& line : ui_.log())
        if (line.find(part) != std::string::npos) return true;
    return false;
}
