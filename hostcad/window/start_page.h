// What an empty window offers: to open a drawing, one of the recent ones, or the sample. It lies over the
// middle of the drawing until there is something to see or to do there.
#pragma once

#include <QFrame>
#include <functional>

namespace hostcad {

class StartPage : public QFrame {
  public:
    StartPage(const QString& title, const QStringList& recent, bool hasSample, QWidget* canvas);

    std::function<void()> onOpen;
    std::function<void(const QString& path)> onRecent;
    std::function<void()> onSample;

  protected:
    // Keeps it in the middle.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void place();
};

}  // namespace hostcad
