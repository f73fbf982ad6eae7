// A transformation for the length of one action.
#pragma once

#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/settings.h"

namespace kv_tr {

/// A new transformation takes the host's language and the remembered folder for the whole
/// component; this one leaves both as they were.
class ScratchTransformation : public clsTr {
public:
    ScratchTransformation() : ScratchTransformation(InitDir(), CurrentMlLanguage()) {}
    ~ScratchTransformation() { TearDown(); }

private:
    ScratchTransformation(const std::string& folder, std::int32_t language) {
        InitDir(folder);
        SetMlLanguage(language, {});
    }
};

}  // namespace kv_tr
