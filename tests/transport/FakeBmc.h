// SPDX-License-Identifier: MIT
//
// A BMC with one sensor data record and one inventory device. Its buffer has room for a set number
// of bytes.
#ifndef TALVANE_TESTS_TRANSPORT_FAKEBMC_H
#define TALVANE_TESTS_TRANSPORT_FAKEBMC_H

#include <functional>
#include <mutex>
#include <numeric>
#include <vector>

#include "transport/Message.h"

class FakeBmc : public transport::Controller {
public:
    // The header of a sensor data record, then bytes that differ from one another.
    explicit FakeBmc(std::size_t recordLength = 64) : record(recordLength), inventory(200) {
        std::iota(record.begin(), record.end(), std::uint8_t{1});
        record[4] = static_cast<std::uint8_t>(recordLength - 5);
        std::iota(inventory.begin(), inventory.end(), std::uint8_t{3});
    }

    int Exchange(const transport::Request& request, transport::Deadline,
                 transport::Response& response) override {
        const std::lock_guard<std::mutex> lock(busy_);
        requests.push_back(request);
        if (beforeEach) beforeEach(requests.size());
        if (error != 0) return error;
        response = Answer(request);
        return 0;
    }

    transport::Response Answer(const transport::Request& request) {
        if (request.netFn != 0x0A) return {0x00, {0xAB}};
        if (request.command == 0x22) return Reserve();
        if (request.command == 0x23) return GetRecord(request.data);
        if (request.command == 0x11) return ReadInventory(request.data);
        return {0xC1, {}};
    }

    transport::Bytes record;
    transport::Bytes inventory;
    std::size_t room = 20;        // for bytes of a record or of the inventory
    std::uint8_t unit = 1;        // bytes per step of the inventory: 1, or 2 with words
    std::uint8_t tooLong = 0xCA;  // completion code of a read that there is no room for
    bool emptyPieces = false;     // answers short reads without a byte of theirs
    std::uint16_t reservation = 0x0100;
    bool grantsReservations = true;
    std::uint8_t recordCompletion = 0;  // of every Get SDR from the second piece on
    int error = 0;
    std::function<void(std::size_t)> beforeEach;  // gets the number of the request, from 1
    std::vector<transport::Request> requests;

private:
    std::mutex busy_;

    transport::Response Reserve() {
        if (!grantsReservations) return {0xC1, {}};
        ++reservation;
        return {0x00, Le16(reservation)};
    }

    transport::Response GetRecord(const transport::Bytes& data) const {
        const unsigned given = data[0] + 256U * data[1];
        const std::size_t offset = data[4];
        const std::size_t count = data[5];
        const bool partial = offset != 0 || count < record.size();
        if (grantsReservations && partial && count != 0xFF && given != reservation)
            return {0xC5, {}};
        if (offset != 0 && recordCompletion != 0) return {recordCompletion, {}};
        if (offset >= record.size()) return {0xC9, {}};
        const std::size_t length = std::min(count, record.size() - offset);
        if (length > room) return {tooLong, {}};
        if (emptyPieces) return {0x00, {0x34, 0x12}};
        return {0x00, Joined({0x34, 0x12}, record, offset, length)};
    }

    transport::Response ReadInventory(const transport::Bytes& data) const {
        const std::size_t offset = (data[1] + 256U * data[2]) * unit;
        if (offset >= inventory.size()) return {0xC9, {}};
        const std::size_t length = std::min<std::size_t>(data[3] * unit, inventory.size() - offset);
        if (length > room) return {tooLong, {}};
        if (emptyPieces) return {0x00, {}};
        return {0x00,
                Joined({static_cast<std::uint8_t>(length / unit)}, inventory, offset, length)};
    }

    static transport::Bytes Le16(unsigned value) {
        return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
    }

    static transport::Bytes Joined(transport::Bytes head, const transport::Bytes& all,
                                   std::size_t offset, std::size_t length) {
        const auto from = all.begin() + static_cast<std::ptrdiff_t>(offset);
        head.insert(head.end(), from, from + static_cast<std::ptrdiff_t>(length));
        return head;
    }
};

#endif
