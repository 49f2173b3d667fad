// fmt, compiled once. Header-only, each unit that formats a text would compile all of it anew, which takes longer than the
// rest of the unit. No package of it is made for mingw-w64.
#include <fmt/format-inl.h>

// The two templates of which fmt's headers promise that they are compiled elsewhere.
template auto fmt::detail::thousands_sep_impl<char>(fmt::detail::locale_ref)
    -> fmt::detail::thousands_sep_result<char>;
template auto fmt::detail::decimal_point_impl<char>(fmt::detail::locale_ref) -> char;
