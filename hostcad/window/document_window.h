// Documents to read, in a window beside the drawing. They are Markdown; links between them are followed.
#pragma once

#include <QDialog>

class QTextBrowser;

namespace hostcad {

class DocumentWindow : public QDialog {
  public:
    explicit DocumentWindow(QWidget* parent);
    void open(const QString& path);
    using QDialog::open;

  private:
    QTextBrowser* browser_;
};

}  // namespace hostcad
