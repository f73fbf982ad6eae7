// Qt's own words in the component's language.
#pragma once

namespace kv_tr {

/// From now on Qt's standard buttons, its file and print dialogs and its context menus speak the
/// current language of the component: Hungarian as far as Qt's own translation is installed,
/// Romanian, Vietnamese and Serbian from tables of ours. Words of other parts of a program are left
/// alone, and so is what the program translates itself. Further calls do nothing. Needs a
/// QApplication.
void UseQtWords();

/// Has the widgets that are open say their words anew after the language has changed.
void ShowQtWordsAnew();

}  // namespace kv_tr
