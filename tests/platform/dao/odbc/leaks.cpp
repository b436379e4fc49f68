// The driver manager never frees what it has read of its ini files. Asked for by the leak checker, where
// there is one.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libodbc.so\n";
}
