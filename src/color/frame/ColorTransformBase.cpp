#include "LXColorTransformBase.h"

LXColorTransformBase::~LXColorTransformBase() = default;
