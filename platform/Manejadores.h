#pragma once

#include <cstddef>

#include "platform/Exporta.h"
#include "platform/Manejador.h"
#include "platform/Suspension.h"

/// Handles of threads and events. A handle is a name that is never used twice: a closed, null or invented one is
/// recognised and answered with the failure value of each call. Every call may come from any thread.
///
/// On Windows the window system has functions of these names: whoever wants both keeps them in different sources. No
/// other header of the library includes this one.

struct SECURITY_ATTRIBUTES;  ///< Only a null pointer to one is of use.

inline constexpr unsigned long INFINITE = 0xFFFFFFFF;
inline constexpr unsigned long WAIT_OBJECT_0 = 0;
inline constexpr unsigned long WAIT_TIMEOUT = 258;
inline constexpr unsigned long WAIT_FAILED = 0xFFFFFFFF;
inline constexpr unsigned long CREATE_SUSPENDED = 4;

/// Starts a thread on `rutina(argumento)`. `pila` is the size of its stack in bytes, 0 for the system's. With
/// CREATE_SUSPENDED it does not begin before ResumeThread(). `id`, unless null, receives the thread's number. Returns
/// null when the system refuses.
///
/// The handle is set once the thread has ended, its thread-local objects destroyed. It stays good until CloseHandle().
[[nodiscard]] URDIMBRE_API HANDLE CreateThread(SECURITY_ATTRIBUTES* atributos, std::size_t pila,
                                               LPTHREAD_START_ROUTINE rutina, void* argumento, unsigned long opciones,
                                               unsigned long* id);

/// Sets a thread's priority, from -15 (idle) over 0 (normal) to 15. False for what is no thread, for a thread that has
/// ended, and when the system refuses, as it refuses ordinary users any rise.
URDIMBRE_API bool SetThreadPriority(HANDLE hilo, int prioridad);

/// Asks a thread to stand still and returns how many such requests it had already, or 0xFFFFFFFF for what is no
/// living thread.
///
/// The thread stands still at its next CompruebaSuspension(), never in the middle of something that it holds locked; so
/// this call does not wait for it. Each request is taken back by one ResumeThread().
URDIMBRE_API unsigned long SuspendThread(HANDLE hilo);

/// Takes back one request and returns how many there were before, 0 for a running thread; 0xFFFFFFFF for what is no
/// living thread.
URDIMBRE_API unsigned long ResumeThread(HANDLE hilo);

/// Makes an event, unset unless `senalado`. A manual one stays set until it is reset, another is unset by the wait that
/// it lets pass. `nombre` must be null: events with a name, shared by programs, are refused. Null on failure.
[[nodiscard]] URDIMBRE_API HANDLE CreateEventW(SECURITY_ATTRIBUTES* atributos, bool manual, bool senalado,
                                               wchar_t const* nombre);

/// Sets or unsets an event. False for what is no event.
URDIMBRE_API bool SetEvent(HANDLE evento);
URDIMBRE_API bool ResetEvent(HANDLE evento);

/// Waits, at most so many milliseconds (INFINITE: without limit), until the thread has ended or the event is set.
/// WAIT_OBJECT_0, WAIT_TIMEOUT, or WAIT_FAILED for what is no handle.
URDIMBRE_API unsigned long WaitForSingleObject(HANDLE manejador, unsigned long milisegundos);

/// The same for one of several, or for all at once: WAIT_OBJECT_0 plus the position of the first one set, or plus 0 for
/// all. Waiting for all unsets automatic events only when all are set. There is no limit to their number; none at all,
/// or one that is no handle, is WAIT_FAILED.
URDIMBRE_API unsigned long WaitForMultipleObjects(unsigned long cuantos, HANDLE const* manejadores, bool todos,
                                                  unsigned long milisegundos);

/// Gives a handle up. A thread goes on without it. A wait already begun goes on too. False for what is no handle.
URDIMBRE_API bool CloseHandle(HANDLE manejador);
