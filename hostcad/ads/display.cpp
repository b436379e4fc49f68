// Messages and display, for modules and Lisp.
#include <cstdarg>
#include <cstdio>

#include "hostcad/editor/host.h"
#include "platform/ads/editor.h"
#include "platform/ui/backend.h"

using hostcad::Host;

extern "C" {

int acutPrintf(const char* format, ...) {
    va_list args, again;
    va_start(args, format);
    va_copy(again, args);
    int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    if (Host::current())
        Host::current()->write(text);
    else
        std::fputs(text.c_str(), stdout);
    return RTNORM;
}

int acedAlert(const char* message) {
    if (ui::backend())
        ui::messageBox("Message", message, ui::kBoxOk);
    else
        acutPrintf("\n%s\n", message);
    return RTNORM;
}

int acedUsrBrk() {
    return Host::current() && Host::current()->lisp().takeCancel() ? 1 : 0;
}

int acedRedraw(const ads_name entity, int mode) {
    Host* host = Host::current();
    if (!host || mode < 1 || mode > 4) return RTERROR;
    if (!entity) {
        host->view().redraw();
        return RTNORM;
    }
    hostcad::EntityName name{entity[0], entity[1]};
    if (mode <= 2)
        host->view().redrawEntity(name, mode == 1);
    else
        host->view().highlight(name, mode == 3);
    return RTNORM;
}

int acedCoordFromPixelToWorld(int, const int pixel[2], ads_point world) {
    Host* host = Host::current();
    if (!host || host->view().pixelHeight() <= 0) return RTERROR;
    const hostcad::ViewBox& box = host->viewBox();
    double unitsPerPixel = box.height / host->view().pixelHeight();
    world[0] = box.centre.x + (pixel[0] - host->view().pixelWidth() / 2.0) * unitsPerPixel;
    world[1] = box.centre.y + (pixel[1] - host->view().pixelHeight() / 2.0) * unitsPerPixel;
    world[2] = 0;
    return RTNORM;
}

int acedSetStatusBarProgressMeter(const char* label, int from, int to) {
    if (!Host::current()) return RTERROR;
    Host::current()->view().startMeter(label ? label : "", from, to);
    return RTNORM;
}

int acedSetStatusBarProgressMeterPos(int position) {
    if (!Host::current()) return RTERROR;
    Host::current()->view().setMeter(position);
    return RTNORM;
}

void acedRestoreStatusBar() {
    if (Host::current()) Host::current()->view().endMeter();
}
}
