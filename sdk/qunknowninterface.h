#ifndef QUNKNOWNINTERFACE_H
#define QUNKNOWNINTERFACE_H

#include <QUuid>

// Base of every interface that crosses the host/plug-in boundary.
class QUnknownInterface
{
public:
    virtual ~QUnknownInterface();

    // Sets *iface to the interface named by iid and answers true; sets it to null and
    // answers false when the object does not offer that interface. The object keeps
    // ownership of what it hands out.
    virtual bool queryInterface(const QUuid& iid, QUnknownInterface** iface) = 0;
};

// Interface identifiers of the host SDK.
inline constexpr QUuid IID_QUnknown{0x1d8518cd, 0xe8f5, 0x4366, 0x99, 0xe8, 0x87, 0x9f, 0xd7, 0xe4, 0x82, 0xde};
inline constexpr QUuid IID_QGPlugin{0x7c3a45ee, 0x1e42, 0x4b5f, 0x8a, 0x54, 0x2d, 0x0b, 0x76, 0x33, 0xe1, 0x09};
inline constexpr QUuid IID_StudioInterface{0x3f1e8a52, 0x6b0d, 0x4c2e, 0x9f, 0x17, 0xa4, 0x5c, 0x21, 0x7e, 0x90, 0x3b};
inline constexpr QUuid IID_ProjectInterface{0xb84d2c61, 0x05f3, 0x47a9, 0xbe, 0x62, 0x18, 0xd9, 0x4f, 0x70, 0xca, 0x55};

#endif
