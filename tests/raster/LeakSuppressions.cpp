// The font library keeps a few hundred bytes of its own until the process ends; leak checkers are
// told so. Nothing of this project is left out.

extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
