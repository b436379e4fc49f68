// The driver manager never frees what it has read of its ini files. Asked for by the leak checker, where
// there is one, by this name. NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libodbc.so\n";
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
