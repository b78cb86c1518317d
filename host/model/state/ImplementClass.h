#pragma once

#include <yxbase/YxRxClass.h>

/// Defines what YX_DECLARE_CLASS declares: the one description of a class, made on first use, so that it does not
/// matter which source of the model is initialised first.
#define YX_IMPLEMENT_CLASS(Class, Parent)                     \
    YxRxClass* Class::desc() {                                \
        static YxRxClass description(#Class, Parent::desc()); \
        return &description;                                  \
    }                                                         \
    YxRxClass* Class::isA() const {                           \
        return desc();                                        \
    }
