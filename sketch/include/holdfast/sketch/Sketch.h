#pragma once

// All of the sketch engine's face.
#include "holdfast/sketch/Drawing.h"
#include "holdfast/sketch/Edits.h"
#include "holdfast/sketch/Fates.h"
#include "holdfast/sketch/Files.h"
#include "holdfast/sketch/Infer.h"
#include "holdfast/sketch/Pictures.h"
#include "holdfast/sketch/Session.h"
