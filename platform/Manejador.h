#pragma once

/// The handle of a thread or an event, and what a thread runs: the types that the window system has under these names,
/// so that a program may have its header beside those that include this one. What is done with handles is declared in
/// platform/Manejadores.h, which cannot stand beside it.
using HANDLE = void*;
using LPTHREAD_START_ROUTINE = unsigned long (*)(void*);
