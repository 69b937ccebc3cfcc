#include "shell/CTextosMensajes.h"

namespace Meseta47 {

CTextosMensajes::CTextosMensajes()
    : textos{
          // phases
          {19018, L"Reading"},
          {19020, L"Filling"},
          {19021, L"Linking"},
          {19022, L"Writing"},
          {19026, L"Looking around each point"},
          {19029, L"Generating the surface"},
          {19045, L"Searching"},
          {39102, L"Writing the classes back"},
          // formats: an iteration and its count; a point's number, X, Y and Z in scaled units
          {12104, L"Iteration %d: %d points"},
          {12105, L"Point %d (X %d, Y %d, Z %d) could not be inserted: no triangle's circle holds it"},
          {12106, L"Point %d (X %d, Y %d, Z %d) could not be inserted: there is no triangle to start from"},
          // what runs answer
          {1, L"Done"},
          {2, L"Cancelled"},
          {15055, L"There are fewer than three points"},
          {15056, L"The points are too few for their extent"},
          {15059, L"A file could not be opened, created or written"},
          {15065, L"A file is cut short"},
          {15105, L"The points could not be linked, or a file is inconsistent"},
      } {}

CString CTextosMensajes::Texto(unsigned id) const {
  const auto it = textos.find(id);
  return it == textos.end() ? CString() : it->second;
}

}  // namespace Meseta47
