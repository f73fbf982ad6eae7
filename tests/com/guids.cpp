// Defines the identifiers that the header of the component declares.
#include <initguid.h>

#include "kv_tr_com.h"
