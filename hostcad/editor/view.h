// The picture of the drawing, as far as the host drives it. A batch run has none to show.
#pragma once

#include <string>
#include <vector>

#include "hostcad/editor/prompt.h"
#include "platform/ads/overlay.h"

namespace hostcad {

// What part of the drawing is seen.
struct ViewBox {
    Point centre{};
    double height = 1;
    double width = 1;
};

class View {
  public:
    virtual ~View() = default;
    // Size in pixels.
    virtual int pixelWidth() const = 0;
    virtual int pixelHeight() const = 0;
    virtual void show(const ViewBox& box) = 0;
    virtual void redraw() = 0;
    virtual void redrawEntity(const EntityName& entity, bool isDrawn) = 0;
    virtual void highlight(const EntityName& entity, bool on) = 0;
    // These are selected now, by a program or because a command has ended; none empty the selection.
    virtual void select(const std::vector<EntityName>& entities) = 0;
    // Of what is seen now.
    virtual overlay::LabelCounts labelCounts() = 0;
    // A program shows the user these entities, which the user has not selected.
    virtual void present(const std::vector<EntityName>& entities) = 0;
    // The meter in the status bar; an empty label with no range takes it away.
    virtual void startMeter(const std::string& label, int from, int to) = 0;
    virtual void setMeter(int position) = 0;
    virtual void endMeter() = 0;
};

// Shows nothing, as wide and high as a plain screen.
class NoView : public View {
  public:
    int pixelWidth() const override { return 1024; }
    int pixelHeight() const override { return 768; }
    void show(const ViewBox&) override {}
    void redraw() override {}
    void redrawEntity(const EntityName&, bool) override {}
    void highlight(const EntityName&, bool) override {}
    void select(const std::vector<EntityName>&) override {}
    overlay::LabelCounts labelCounts() override { return {}; }
    void present(const std::vector<EntityName>&) override {}
    void startMeter(const std::string&, int, int) override {}
    void setMeter(int) override {}
    void endMeter() override {}
};

}  // namespace hostcad
