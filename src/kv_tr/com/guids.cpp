// Defines the identifiers that the header made from kv_tr.idl declares.
#include <initguid.h>

#include "kv_tr_com.h"
