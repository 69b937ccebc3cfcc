#include "platform/Memoria.h"

// There the pages of a heap come as they are met, and cannot be asked for; large ones are a privilege of the user.
void Puebla(void* /*desde*/, std::size_t /*bytes*/) noexcept {}
void EnPaginasGrandes(void* /*desde*/, std::size_t /*bytes*/) noexcept {}
