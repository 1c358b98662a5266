#pragma once

// Stands in for the system's header where there is no Mac; see CFBundle.h.

typedef struct {
    unsigned char byte0, byte1, byte2, byte3, byte4, byte5, byte6, byte7;
    unsigned char byte8, byte9, byte10, byte11, byte12, byte13, byte14, byte15;
} CFUUIDBytes;
