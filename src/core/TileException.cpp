#include "LXTileException.h"

#define LX_TILE_EXCEPTION(Name, text)                                                              \
    const char* const Name::WHATDATA = text;                                                       \
    const char* Name::what() const noexcept {                                                      \
        return WHATDATA;                                                                           \
    }

LX_TILE_EXCEPTION(LXTMBadInstance, "Tile manager instance doesn't exist.")
LX_TILE_EXCEPTION(LXTMSwapError, "Nothing to swap.")
LX_TILE_EXCEPTION(LXTMInvalidBlock, "Invalid tile pointer.")
LX_TILE_EXCEPTION(LXTMAlreadyFree, "Tile already free.")
LX_TILE_EXCEPTION(LXTMSwapFileError, "Can't create swap file.")
