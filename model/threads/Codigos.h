#pragma once

namespace Meseta47 {

/// What phases and runs answer. Callers hand a failure on as it is; the texts are the program's.
inline constexpr int kHecho = 1;
inline constexpr int kCancelado = 2;                 ///< the progress interface answered 0
inline constexpr int kPocosPuntos = 15055;           ///< fewer than three points were accepted
inline constexpr int kNubeDispersa = 15056;          ///< too few points for their extent: some must lie far astray
inline constexpr int kFicheroInaccesible = 15059;    ///< a file could not be opened, created, written or renamed
inline constexpr int kFicheroCortado = 15065;        ///< a file ends before what it announces
inline constexpr int kFicheroInconsistente = 15105;  ///< a file or a mesh contradicts itself; work could not go on

}  // namespace Meseta47
