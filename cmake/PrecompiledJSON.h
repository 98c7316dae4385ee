/// JSON values for precompiled headers. The library's header has inline functions for literals, which make every source
/// instantiate a parser that this project never calls, at two fifths of a second. Here they are declared, and their bodies
/// belong to templates that nobody instantiates. Where a later header writes them otherwise, this does nothing.

#define _json(text, length)                                                                                  \
    _json(text, length);                                                                                     \
    template <class Never>                                                                                   \
    Never neverParsed(text, length)
#define _json_pointer(text, length)                                                                          \
    _json_pointer(text, length);                                                                             \
    template <class Never>                                                                                   \
    Never neverPointed(text, length)
#include <nlohmann/json.hpp>
#undef _json
#undef _json_pointer
