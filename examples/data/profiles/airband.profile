<?xml version="1.0" encoding="UTF-8"?>
<profile id="airband" showInChannelList="1">
  <label lang="en">Civil airband (voice)</label>
  <label lang="de">Ziviler Flugfunk (Sprechfunk)</label>
  <description lang="en">VHF air-ground channels by their ICAO channel names in kilohertz (118005 is channel 118.005). Source: ICAO Annex 10 Volume V.</description>
  <description lang="de">UKW-Flugfunkkanäle nach ihren ICAO-Kanalnamen in Kilohertz (118005 ist Kanal 118.005). Quelle: ICAO Annex 10 Volume V.</description>
  <begin>117.975 MHz</begin>
  <end>137 MHz</end>
  <channels>
    <range label="25 kHz" type="provider" selectable="1">
      <begin>117.975 MHz</begin>
      <end>137 MHz</end>
      <color>#4477aa</color>
      <comment>The channel name is the frequency: 118.000 to 136.975 MHz</comment>
      <channels start="117.9875 MHz" width="25 kHz" first="118000" count="760" step="25"/>
    </range>
    <!-- 8.33 kHz stands for a third of 25 kHz, which no decimal number holds. In one run of 2280 channels a pitch of
         8.333333 kHz (frequencies of a run keep six decimals) drifts by 0.8 Hz, and one of 8.33 kHz by 7.6 kHz, nearly
         a channel; nor could one run count the names, which leave out two of every five multiples of 5 kHz. Three
         interleaved runs of 25 kHz pitch (8.333 + 16.667 kHz) keep every edge within one hertz, and no two channels
         overlap. Their centres lie 0, 8.333 and 16.667 kHz above the multiples of 25 kHz, their names 5, 10 and
         15 kHz above. -->
    <range label="8.33 kHz" type="provider" selectable="1">
      <begin>117.975 MHz</begin>
      <end>137 MHz</end>
      <color>#88aacc</color>
      <comment>118.005 lies on 118.0000 MHz, 118.010 on 118.0083 MHz, 118.015 on 118.0167 MHz</comment>
      <channels start="117.995833 MHz" width="8.333 kHz" space="16.667 kHz" first="118005" count="760" step="25"/>
      <channels start="118.004167 MHz" width="8.333 kHz" space="16.667 kHz" first="118010" count="760" step="25"/>
      <channels start="118.0125 MHz" width="8.333 kHz" space="16.667 kHz" first="118015" count="760" step="25"/>
    </range>
    <range label="Emergency" type="channel" selectable="1">
      <begin>121.4875 MHz</begin>
      <end>121.5125 MHz</end>
      <color>#dd2222</color>
      <comment>121.5 MHz, the aeronautical emergency frequency</comment>
    </range>
  </channels>
</profile>
