#include <cstdlib>

namespace {

// The tree that these tests run in has its own texts. It must be known before anybody asks for a path.
[[maybe_unused]] const bool s_set = [] {
    setenv("QUILLET_ROOT", QUILLET_TEST_ROOT, 1);
    unsetenv("LC_ALL");
    unsetenv("LANGUAGE");
    setenv("LANG", "C", 1);
    return true;
}();

} // namespace
