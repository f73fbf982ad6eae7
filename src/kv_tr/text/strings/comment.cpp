// The pseudo-language for checking captions: a few placeholders, the rest falls back to Hungarian.
#include "kv_tr/text/strings/table.h"

namespace kv_tr {
namespace {

// clang-format off
constexpr MlString kCommentStrings[] = {
    {Text::kAdjustmentTitle, "Field/Caption"},
    {Text::kGraphMode, "Field/Caption"},
    {Text::kEditMode, "Field/Caption"},
    {Text::kTableMode, "Field/Caption"},
    {Text::kBadFormat, "Rossz ford."},
    {Text::kTooFewPoints, "Rossz ford."},
};
// clang-format on
static_assert(IdsRise(kCommentStrings));

}  // namespace

std::span<const MlString> CommentStrings() { return kCommentStrings; }

}  // namespace kv_tr
