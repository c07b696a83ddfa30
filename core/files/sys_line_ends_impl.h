#pragma once

#include <string>
#include <string_view>

/// Line ends as text files on Windows have them: CR LF in the file, LF in the program.
namespace bk {

#if defined(_WIN32)
inline constexpr bool platform_translates_text = true;
#else
inline constexpr bool platform_translates_text = false;
#endif

/// Appends the text with a CR before each LF.
void append_with_cr_lf(std::string& out, std::string_view text);

/// Turns CR LF into LF, piece by piece: a pair may be cut by the end of a piece. A CR without LF stays.
class LineEndReader {
public:
    void append(std::string& out, std::string_view piece);
    /// Call after the last piece: appends a CR that was held back, because no LF follows it.
    void finish(std::string& out);

private:
    bool cr_held_ = false;
};

} // namespace bk
