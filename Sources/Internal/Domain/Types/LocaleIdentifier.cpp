#include "LocaleIdentifier.h"

#include <algorithm>
#include <cctype>

namespace pelorino {
namespace {

/// The currency of each region (ISO 3166, ISO 4217). All records have the same length.
constexpr std::string_view currencies =
    "AD EUR,AE AED,AF AFN,AG XCD,AI XCD,AL ALL,AM AMD,AO AOA,AR ARS,AS USD,AT EUR,AU AUD,AW AWG,"
    "AX EUR,AZ AZN,BA BAM,BB BBD,BD BDT,BE EUR,BF XOF,BG EUR,BH BHD,BI BIF,BJ XOF,BL EUR,BM BMD,"
    "BN BND,BO BOB,BQ USD,BR BRL,BS BSD,BT BTN,BV NOK,BW BWP,BY BYN,BZ BZD,CA CAD,CC AUD,CD CDF,"
    "CF XAF,CG XAF,CH CHF,CI XOF,CK NZD,CL CLP,CM XAF,CN CNY,CO COP,CR CRC,CU CUP,CV CVE,CW XCG,"
    "CX AUD,CY EUR,CZ CZK,DE EUR,DG USD,DJ DJF,DK DKK,DM XCD,DO DOP,DZ DZD,EA EUR,EC USD,EE EUR,"
    "EG EGP,EH MAD,ER ERN,ES EUR,ET ETB,FI EUR,FJ FJD,FK FKP,FM USD,FO DKK,FR EUR,GA XAF,GB GBP,"
    "GD XCD,GE GEL,GF EUR,GG GBP,GH GHS,GI GIP,GL DKK,GM GMD,GN GNF,GP EUR,GQ XAF,GR EUR,GS GBP,"
    "GT GTQ,GU USD,GW XOF,GY GYD,HK HKD,HM AUD,HN HNL,HR EUR,HT HTG,HU HUF,IC EUR,ID IDR,IE EUR,"
    "IL ILS,IM GBP,IN INR,IO USD,IQ IQD,IR IRR,IS ISK,IT EUR,JE GBP,JM JMD,JO JOD,JP JPY,KE KES,"
    "KG KGS,KH KHR,KI AUD,KM KMF,KN XCD,KP KPW,KR KRW,KW KWD,KY KYD,KZ KZT,LA LAK,LB LBP,LC XCD,"
    "LI CHF,LK LKR,LR LRD,LS LSL,LT EUR,LU EUR,LV EUR,LY LYD,MA MAD,MC EUR,MD MDL,ME EUR,MF EUR,"
    "MG MGA,MH USD,MK MKD,ML XOF,MM MMK,MN MNT,MO MOP,MP USD,MQ EUR,MR MRU,MS XCD,MT EUR,MU MUR,"
    "MV MVR,MW MWK,MX MXN,MY MYR,MZ MZN,NA NAD,NC XPF,NE XOF,NF AUD,NG NGN,NI NIO,NL EUR,NO NOK,"
    "NP NPR,NR AUD,NU NZD,NZ NZD,OM OMR,PA PAB,PE PEN,PF XPF,PG PGK,PH PHP,PK PKR,PL PLN,PM EUR,"
    "PN NZD,PR USD,PS ILS,PT EUR,PW USD,PY PYG,QA QAR,RE EUR,RO RON,RS RSD,RU RUB,RW RWF,SA SAR,"
    "SB SBD,SC SCR,SD SDG,SE SEK,SG SGD,SH SHP,SI EUR,SJ NOK,SK EUR,SL SLE,SM EUR,SN XOF,SO SOS,"
    "SR SRD,SS SSP,ST STN,SV USD,SX XCG,SY SYP,SZ SZL,TC USD,TD XAF,TF EUR,TG XOF,TH THB,TJ TJS,"
    "TK NZD,TL USD,TM TMT,TN TND,TO TOP,TR TRY,TT TTD,TV AUD,TW TWD,TZ TZS,UA UAH,UG UGX,UM USD,"
    "US USD,UY UYU,UZ UZS,VA EUR,VC XCD,VE VES,VG USD,VI USD,VN VND,VU VUV,WF XPF,WS WST,XK EUR,"
    "YE YER,YT EUR,ZA ZAR,ZM ZMW,ZW USD,";
constexpr std::size_t recordLength = 7;

bool consistsOf(std::string_view text, std::size_t length, int (*isOfKind)(int)) {
  return text.size() == length && std::ranges::all_of(text, [=](char character) {
           return isOfKind(static_cast<unsigned char>(character)) != 0;
         });
}

std::string upperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

/// Removes the part before the next separator, and the separator, from `rest`. Returns the part.
std::string_view takePart(std::string_view& rest, std::string_view separators) {
  const std::size_t end = std::min(rest.find_first_of(separators), rest.size());
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return part;
}

std::optional<std::string> currencyOfRegion(std::string_view region) {
  for (std::string_view rest = currencies; !rest.empty(); rest.remove_prefix(recordLength)) {
    if (rest.starts_with(region)) return std::string(rest.substr(3, 3));
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> regionCodeOf(std::string_view localeIdentifier) {
  std::string_view rest = localeIdentifier.substr(0, localeIdentifier.find_first_of("@."));
  takePart(rest, "_-");  // Skips the language.
  while (!rest.empty()) {
    const std::string_view part = takePart(rest, "_-");
    if (consistsOf(part, 2, std::isalpha) || consistsOf(part, 3, std::isdigit)) {
      return upperCase(part);
    }
    // Only a script, such as "Hant", may stand before the region.
    if (!consistsOf(part, 4, std::isalpha)) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::string> currencyCodeOf(std::string_view localeIdentifier) {
  constexpr std::string_view currencyKey = "currency=";
  std::string_view keywords = localeIdentifier;
  takePart(keywords, "@");
  while (!keywords.empty()) {
    const std::string_view keyword = takePart(keywords, ";");
    if (!keyword.starts_with(currencyKey)) continue;
    const std::string_view code = keyword.substr(currencyKey.size());
    if (consistsOf(code, 3, std::isalpha)) return upperCase(code);
  }
  const auto region = regionCodeOf(localeIdentifier);
  return region ? currencyOfRegion(*region) : std::nullopt;
}

}  // namespace pelorino
