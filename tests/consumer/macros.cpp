// A program's macros of the same names as those of the catalogue are intact after its headers.
#define BLOCK_BEGIN 1
#define BLOCK_END 2
#define NAME 4
#define TEXT 8
#define COPY 16

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"

static_assert(BLOCK_BEGIN + BLOCK_END + NAME + TEXT + COPY == 31);
