#include "qunknowninterface.h"

QUnknownInterface::~QUnknownInterface() = default;
