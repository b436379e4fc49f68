// What a product says of itself at the lower edge of the window, a field each: a short text, and a long one
// that the mouse brings up. The function (window-status) of its Lisp gives them as pairs.
#pragma once

#include <vector>

#include "hostcad/lisp/interpreter.h"

class QLabel;
class QStatusBar;

namespace hostcad {

class StatusFields {
  public:
    // The bar outlives the fields.
    explicit StatusFields(QStatusBar& bar) : bar_(bar) {}

    // Asks the product anew. Without the function, or after an error in it, there are none.
    void show(lisp::Interpreter& lisp);

  private:
    QStatusBar& bar_;
    std::vector<QLabel*> labels_;  // the bar's
};

}  // namespace hostcad
