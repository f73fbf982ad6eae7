// The command line is two programs: kv_tr, which starts without GDAL, and kv_tr_layers, which has
// it.
#pragma once

namespace kv_tr::cli {

/// Keeps the arguments of this program for whoever hands over.
void RememberArguments(char** argv);

/// Goes on as kv_tr_layers with the same arguments if that program is installed beside this one:
/// loading GDAL takes longer than most work of kv_tr. Returns where there is no such program. To
/// be called before anything is read or written.
void HandOver();

}  // namespace kv_tr::cli
