// SPDX-License-Identifier: MIT
//
// A request to /dev/ipmi, as the driver has it.
#ifndef TALVANE_BENCH_BARE_REQUESTS_H
#define TALVANE_BENCH_BARE_REQUESTS_H

static const unsigned long kSendMessage = 0xC0045301;

struct Message {
    unsigned char command;
    unsigned char responder;
    unsigned char bus;
    unsigned char netFn;
    unsigned char lun;
    unsigned char* data;
    unsigned length;
    unsigned timeOut;
    unsigned char* response;
    unsigned responseLength;
    unsigned char completion;
};

#endif
