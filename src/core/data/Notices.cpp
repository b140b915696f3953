#include "core/data/Notices.h"

#include "moc_Notices.cpp"
