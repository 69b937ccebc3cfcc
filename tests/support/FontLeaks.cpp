/// What the leak sanitizer leaves out here: the library that finds fonts keeps some hundred bytes for the program's
/// life, and nothing of it is ours to give back.
extern "C" [[gnu::visibility("default")]] char const* __lsan_default_suppressions();
extern "C" char const* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
