// The command line's own texts by name.
#pragma once

#include <initializer_list>
#include <string>

namespace kv_tr::cli {

/// Ids in the string tables.
enum class TextId {
    kProgram = 1002,
    kAdjust,
    kTransform,
    kTypes,
    kPoints,
    kType,
    kInverse,
    kExclude,
    kLimit,
    kLog,
    kSavePoints,
    kLanguage,
    kJson,
    kDecimalComma,
    kFile,
    kOutput,
    kDecimals,
    kNoId,
    kKeepGoing,
    kHelp,
    kVersion,
    kUnknownType,
    kUnknownLanguage,
    kUnsuitableNumber,
    kPointsNeeded,
    kUnknownIdentifier,
    kTypeLowered,
    kBadPointLine,
    kBadLine,
    kLinesDone,
    kLinesKept,
    kNothingTransformed,
    kNumberHeading,
    kTypeHeading,
    kPointsHeading,
    kNameHeading,
    kError,
    kStandardInput,
};

/// A text in the current language, its places {0}, {1}, ... filled with the values.
std::string Text(TextId id, std::initializer_list<std::string> values = {});

}  // namespace kv_tr::cli
