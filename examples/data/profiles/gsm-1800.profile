<?xml version="1.0" encoding="UTF-8"?>
<profile id="gsm-1800" showInChannelList="1">
  <label lang="en">GSM 1800 (DCS 1800)</label>
  <label lang="de">GSM 1800 (DCS 1800)</label>
  <description lang="en">Carriers by ARFCN 512 to 885, 200 kHz apart; base stations transmit 95 MHz above mobile stations. Source: 3GPP TS 45.005.</description>
  <description lang="de">Träger nach ARFCN 512 bis 885 im Abstand von 200 kHz; Basisstationen senden 95 MHz über den Mobilstationen. Quelle: 3GPP TS 45.005.</description>
  <begin>1710 MHz</begin>
  <end>1880 MHz</end>
  <channels>
    <range label="DCS 1800" type="direction" selectable="1">
      <begin>1710 MHz</begin>
      <end>1785 MHz</end>
      <color>#c04848</color>
      <comment>Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="1710.1 MHz" width="200 kHz" first="512" count="374"/>
      <mirror>95 MHz</mirror>
    </range>
  </channels>
</profile>
