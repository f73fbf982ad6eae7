// The classes that hosts create by name.
#pragma once

#include <memory>

#include "kv_tr/com/object.h"
#include "kv_tr/published/clsTrCalc.h"

namespace kv_tr::com {

IDispatch* NewTr();
IDispatch* NewTrCalc();
IDispatch* NewFile();
IDispatch* NewCommonDialog();
IDispatch* NewComponent();
IDispatch* NewDebug();
IDispatch* NewRec();

/// An engine that exists already, for hosts.
_clsTrCalc* Wrap(std::shared_ptr<kv_tr::clsTrCalc> engine);

}  // namespace kv_tr::com
