#include "module/features/line_pieces.h"

#include <algorithm>

namespace norvane {

std::string_view TakePiece(std::string_view& content, size_t longest) {
    // Only the piece is searched: a file without line ends would else be gone through once for each.
    std::string_view piece = content.substr(0, longest);
    piece = piece.substr(0, std::min(piece.find('\n'), piece.size() - 1) + 1);
    content.remove_prefix(piece.size());
    if (!piece.empty() && piece.back() == '\n') piece.remove_suffix(1);
    return piece.substr(0, piece.find('\0'));
}

}  // namespace norvane
