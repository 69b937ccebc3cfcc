#include "platform/Memoria.h"

// There the pages of a heap come as they are met, and cannot be asked for.
void Puebla(void* /*desde*/, std::size_t /*bytes*/) noexcept {}
