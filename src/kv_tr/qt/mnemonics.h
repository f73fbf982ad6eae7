// Letters for Alt.
#pragma once

#include <QStringList>

namespace kv_tr {

/// The captions of controls, each with "&" before a letter or digit of its own. As many get one as
/// is possible; short captions have the first choice, and early letters come first.
QStringList WithMnemonics(const QStringList& captions);
/// A caption that may be another one at any time, with a letter that none of the others has; where
/// all of its own are taken, with a digit or another letter in parentheses behind it. Empty for an
/// empty one.
QString WithFreeMnemonic(QString caption, const QStringList& marked);

}  // namespace kv_tr
