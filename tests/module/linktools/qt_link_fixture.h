// The dialogs of the link tools in a real window.
#pragma once

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/linktools/link_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtLinkTools : public LinkTools, protected QtPerson {
  protected:
    // With the sample drawing; the output gets its table by the statements.
    void SetUp() override {
        LinkTools::SetUp();
        openSample();
        sql(statements_);
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        LinkTools::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }

    explicit QtLinkTools(const char* statements) : statements_(statements) {}
    const char* statements_;
    ui::QtBackend qt_;
};
