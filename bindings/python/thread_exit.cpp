// What becomes of threads that the end of the interpreter catches inside the module.
//
// A daemon thread that wants the interpreter's lock after the interpreter began to end is ended by
// pthread_exit, which unwinds its stack with the GNU libraries. The destructors on the way would
// use Python's objects without the lock, and one that must not throw ends the whole program.
// Therefore the thread stops for good where the unwinding meets the first function of the module,
// and goes with the process. The linker puts the function below in the place of the one that
// decides what happens in a frame (--wrap).
#include <unistd.h>
#include <unwind.h>

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker prescribes the names
_Unwind_Reason_Code __real___gxx_personality_v0(int version, _Unwind_Action actions,
                                                _Unwind_Exception_Class kind,
                                                _Unwind_Exception* thrown,
                                                _Unwind_Context* context);

__attribute__((used)) _Unwind_Reason_Code __wrap___gxx_personality_v0(int version,
                                                                      _Unwind_Action actions,
                                                                      _Unwind_Exception_Class kind,
                                                                      _Unwind_Exception* thrown,
                                                                      _Unwind_Context* context) {
    while ((actions & _UA_FORCE_UNWIND) != 0) pause();
    return __real___gxx_personality_v0(version, actions, kind, thrown, context);
}
// NOLINTEND(bugprone-reserved-identifier)
}
