<?xml version="1.0" encoding="UTF-8"?>
<profile id="gsm-900" showInChannelList="1">
  <label lang="en">GSM 900</label>
  <label lang="de">GSM 900</label>
  <description lang="en">Carriers by ARFCN, 200 kHz apart; base stations transmit 45 MHz above mobile stations. Source: 3GPP TS 45.005.</description>
  <description lang="de">Träger nach ARFCN im Abstand von 200 kHz; Basisstationen senden 45 MHz über den Mobilstationen. Quelle: 3GPP TS 45.005.</description>
  <begin>876 MHz</begin>
  <end>960 MHz</end>
  <channels>
    <!-- Each range is the uplink, its mirrored copy of the same label the downlink. The uplink carrier of ARFCN n is
         890 MHz + n * 200 kHz, above 124 it is 890 MHz + (n - 1024) * 200 kHz. -->
    <range label="GSM-R" type="direction" selectable="1">
      <begin>876 MHz</begin>
      <end>880 MHz</end>
      <color>#7a7a7a</color>
      <comment>Railways, ARFCN 955 to 973. Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="876.1 MHz" width="200 kHz" first="955" count="19"/>
      <mirror>45 MHz</mirror>
    </range>
    <!-- ARFCN 0 lies across 890 MHz, so this range ends where ARFCN 1 begins. -->
    <range label="E-GSM extension" type="direction" selectable="1">
      <begin>880 MHz</begin>
      <end>890.1 MHz</end>
      <color>#e0a030</color>
      <comment>ARFCN 975 to 1023 and 0. Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="880.1 MHz" width="200 kHz" first="975" count="49"/>
      <channels start="889.9 MHz" width="200 kHz" first="0" count="1"/>
      <mirror>45 MHz</mirror>
    </range>
    <range label="P-GSM" type="direction" selectable="1">
      <begin>890 MHz</begin>
      <end>915 MHz</end>
      <color>#d06020</color>
      <comment>ARFCN 1 to 124. Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="890.1 MHz" width="200 kHz" first="1" count="124"/>
      <mirror>45 MHz</mirror>
    </range>
  </channels>
</profile>
