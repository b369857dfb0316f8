#pragma once

#include <QtGlobal>

#if defined(VYRNOTICE_LIBRARY)
#define VYRNOTICE_EXPORT Q_DECL_EXPORT
#else
#define VYRNOTICE_EXPORT Q_DECL_IMPORT
#endif
