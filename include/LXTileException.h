#pragma once

#include "LXExport.h"

#include <exception>

/// The vocabulary of tile faults. The resident pool throws none of them: what it can run out of
/// is tiles, and that is a std::bad_alloc.

#define LX_TILE_EXCEPTION(Name)                                                                    \
    class LIBIMAGE_EXPORT Name : public std::exception {                                           \
    public:                                                                                        \
        static const char* const WHATDATA;                                                         \
        const char* what() const noexcept override;                                                \
    }

LX_TILE_EXCEPTION(LXTMBadInstance);
LX_TILE_EXCEPTION(LXTMSwapError);
LX_TILE_EXCEPTION(LXTMInvalidBlock);
LX_TILE_EXCEPTION(LXTMAlreadyFree);
LX_TILE_EXCEPTION(LXTMSwapFileError);

#undef LX_TILE_EXCEPTION
