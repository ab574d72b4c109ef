#pragma once

/// What an export writes. Callers use the numbers, so they must not change.
enum ExportType : int {
    CsvEnglish = 8,
    CsvChinese = 9,
    DeskPhoneXml = 13,
    CordlessXml = 14,
};
