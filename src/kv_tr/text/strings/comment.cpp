// The pseudo-language for checking captions: a few placeholders, the rest falls back to Hungarian.
#include "kv_tr/text/strings/table.h"

namespace kv_tr {
namespace {

// clang-format off
constexpr MlString kCommentStrings[] = {
    {  31, "Field/Caption"},
    {  33, "Field/Caption"},
    {  34, "Field/Caption"},
    {  35, "Field/Caption"},
    {  74, "Rossz ford."},
    {  97, "Rossz ford."},
};
// clang-format on
static_assert(IdsRise(kCommentStrings));

}  // namespace

std::span<const MlString> CommentStrings() { return kCommentStrings; }

}  // namespace kv_tr
