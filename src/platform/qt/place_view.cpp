#include "platform/qt/place_view.h"
