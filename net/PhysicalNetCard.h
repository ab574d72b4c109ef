#pragma once

class QString;

/// True when the interface with this adapterId() is a card on the PCI bus rather than a virtual
/// one. Each platform has its own source.
bool isPhysicalNetCard(const QString &interfaceName);
