// Letters for Alt.
#pragma once

#include <QStringList>

namespace kv_tr {

/// The captions of controls, each with "&" before a letter or digit of its own. As many get one as
/// is possible; short captions have the first choice, and early letters come first.
QStringList WithMnemonics(const QStringList& captions);

}  // namespace kv_tr
