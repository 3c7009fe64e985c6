// Reads and writes in an order that the input chooses; reads must stay within what is there.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/BitStream.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    fuzz::writeSeeds(*pArguments, *pppArguments,
                     {std::string("\1\2\3\4\5\6\7\10\0abcdefghijklmnopqrstuvwxyz", 36)});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    const size_t uOrders = uSize / 2;
    BitStream reader(pData + uOrders, uSize - uOrders, false);
    BitStream echo;
    for (size_t i = 0; i < uOrders; ++i)
    {
        const uint32_t uBefore = reader.readOffset();
        const uint32_t uAmount = pData[i] >> 3;
        std::vector<uint8_t> vecBytes(64, 0);
        uint16_t uShort = 0;
        float fFloat = 0.0f;
        Uuid uuid;
        bool bRead = false;
        bool bBit = false;
        switch (pData[i] & 7)
        {
        case 0:
            bRead = reader.readBits(vecBytes.data(), uAmount);
            break;
        case 1:
            bRead = reader.readBytes(vecBytes.data(), uAmount);
            break;
        case 2:
            bRead = uAmount > 0 && reader.readAlignedBytes(vecBytes.data(), uAmount);
            break;
        case 3:
            bRead = reader.readBool(bBit);
            break;
        case 4:
            bRead = reader.read(uShort);
            break;
        case 5:
            bRead = reader.read(fFloat);
            break;
        case 6:
            bRead = reader.read(uuid);
            break;
        default:
            reader.alignRead();
            bRead = true;
            break;
        }
        if (reader.readOffset() > reader.bitsUsed() || (!bRead && reader.readOffset() != uBefore))
            std::abort();
        if ((pData[i] & 7) == 0 && bRead && uAmount > 0)
        {
            // What was read is written and read again at another position.
            const uint32_t uPlace = echo.bitsUsed();
            echo.writeBits(vecBytes.data(), uAmount);
            BitStream again(echo.bytes().data(), echo.bytes().size(), true);
            std::vector<uint8_t> vecSkip(uPlace / 8 + 1);
            std::vector<uint8_t> vecBack(64, 0);
            if (!again.readBits(vecSkip.data(), uPlace) || !again.readBits(vecBack.data(), uAmount) ||
                vecBack != vecBytes)
                std::abort();
        }
    }
    return 0;
}
