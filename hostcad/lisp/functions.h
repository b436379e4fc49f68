// The built-in functions, a file for each kind.
#pragma once

namespace hostcad::lisp {

class Interpreter;

void defineSpecialForms(Interpreter& lisp);
void defineListFunctions(Interpreter& lisp);
void defineSequenceFunctions(Interpreter& lisp);
void definePredicates(Interpreter& lisp);
void defineNumberFunctions(Interpreter& lisp);
void defineStringFunctions(Interpreter& lisp);
void defineUnitFunctions(Interpreter& lisp);
void defineGeometryFunctions(Interpreter& lisp);
void defineFileFunctions(Interpreter& lisp);
void defineOutputFunctions(Interpreter& lisp);
void defineErrorFunctions(Interpreter& lisp);
// Those that reach the drawing and the user through the host's interface.
void defineEntityFunctions(Interpreter& lisp);
void defineSelectionFunctions(Interpreter& lisp);
void definePromptFunctions(Interpreter& lisp);
void defineHostFunctions(Interpreter& lisp);
// Those that look into databases.
void defineDatabaseFunctions(Interpreter& lisp);

}  // namespace hostcad::lisp
