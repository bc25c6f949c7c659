#pragma once

// The type of a C function with the calling convention of Windows system libraries: stdcall on 32-bit
// Windows, the one convention of the target everywhere else. A function declared with it,
//     extern "C" stdcall_function_t<int, const char*> open_thing;
// is defined as usual; the definition takes the convention over from the declaration.
#ifdef _WIN32
template <typename Result, typename... Arguments>
using stdcall_function_t = Result __stdcall(Arguments...);
#else
template <typename Result, typename... Arguments>
using stdcall_function_t = Result(Arguments...);
#endif
